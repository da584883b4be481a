// The least-squares line through a range of points.
#pragma once

#include "KxMath/KxPrimitives.h"

namespace KxMath::detail {

/// KxLine::calcFromPointCloud() over the points from `begin` up to, not including, `end`.
bool fitLine(const KxPointXY* begin, const KxPointXY* end, KxLine& line);

} // namespace KxMath::detail
