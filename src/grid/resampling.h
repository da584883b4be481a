// Profiles on the columns of a height map.
#pragma once

#include "KxMath/KxPoints.h"

#include <QtCore/QList>

namespace KxMath::detail {

/// Where the columns of a grid stand: `pitch` apart from `origin` on, each rounded once.
struct Columns {
    int count;
    float pitch;
    float origin;
};

/// Fills a row of a grid with KxProfile::calcY() at its columns. Points that are ordered by x are looked through once.
/// @return the number of heights that are not NaN
int fillRow(const QList<KxPointXY>& points, const Columns& columns, float maxDistance, float* row);

} // namespace KxMath::detail
