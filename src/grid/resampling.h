// Profiles on the columns of a height map.
#pragma once

#include "KxMath/KxPoints.h"

#include <QtCore/QList>

namespace KxMath::detail {

/// The positions of the columns of a grid: `pitch` apart from `origin` on, each rounded once.
struct Columns {
    int count;
    float pitch;
    float origin;
};

/// Fills a row of a grid with KxProfile::calcY() at its columns. One pass over the points where the columns rise.
/// @return the number of heights that are not NaN
int fillRow(const QList<KxPointXY>& points, const Columns& columns, float maxDistance, float* row);

} // namespace KxMath::detail
