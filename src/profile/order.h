// Whether the points of a profile are in the order of their x.
#pragma once

#include "profile/coordinates.h"

#include <QtCore/QList>

namespace KxMath::detail {

/// Whether no x is below the one before. False for two points or more with a NaN x among them.
inline bool isRising(const KxPointXY* points, qsizetype count) {
    return allAdjacentX(points, count, [](auto a, auto b) { return a <= b; });
}

/// Whether each x is above the one before, so that none repeats. False for two points or more with a NaN x among them.
inline bool isStrictlyRising(const QList<KxPointXY>& points) {
    return allAdjacentX(points.constData(), points.size(), [](auto a, auto b) { return a < b; });
}

/// Whether sorting by x would change nothing: a point with a NaN x never moves, and no point passes it.
inline bool isSorted(const QList<KxPointXY>& points) {
    return allAdjacentX(points.constData(), points.size(), [](auto a, auto b) { return (a > b) == 0; }); // NaN: true
}

} // namespace KxMath::detail
