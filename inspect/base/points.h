// Conversions of points between vectors and Qt lists.
#pragma once

#include <KxInspect/Profile.h>
#include <KxMath/KxPoints.h>

#include <QtCore/QList>

#include <algorithm>
#include <cstring>
#include <vector>

namespace KxInspect::detail {

static_assert(sizeof(Point) == sizeof(KxMath::KxPointXY) && sizeof(Point3) == sizeof(KxMath::KxPointXYZ));

/// @{ The same points, copied bytewise: both types hold x, y (, z) as floats.
inline void assign(const QList<KxMath::KxPointXY>& points, std::vector<Point>& result) {
    result.resize(static_cast<std::size_t>(points.size()));
    if (!result.empty()) {
        std::memcpy(static_cast<void*>(result.data()), static_cast<const void*>(points.constData()),
                    result.size() * sizeof(Point));
    }
}

inline std::vector<Point> toVector(const QList<KxMath::KxPointXY>& points) {
    std::vector<Point> result;
    assign(points, result);
    return result;
}

inline QList<KxMath::KxPointXY> toList(const std::vector<Point>& points) {
    QList<KxMath::KxPointXY> result;
    const qsizetype size = static_cast<qsizetype>(points.size());
    result.reserve(size); // exactly; without memory the list stays empty, and resize() throws
    result.resize(size);
    if (!points.empty()) {
        std::memcpy(static_cast<void*>(result.data()), points.data(), points.size() * sizeof(Point));
    }
    return result;
}
/// @}

/// The first `count` points, in a list of their own: that which Qt 6.4 makes when a shared list is changed has no check of the
/// memory.
inline QList<KxMath::KxPointXY> copyOf(const QList<KxMath::KxPointXY>& points, qsizetype count) {
    QList<KxMath::KxPointXY> result;
    result.reserve(count);
    result.resize(count);
    std::copy_n(points.cbegin(), count, result.begin());
    return result;
}

} // namespace KxInspect::detail
