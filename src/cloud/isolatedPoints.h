// Points that stand apart from all others.
#pragma once

#include "KxMath/KxPoints.h"

#include <QtCore/QList>

#include <vector>

namespace KxMath::detail {

/// Those of `members` (positions in `points`, none with a NaN coordinate) whose smallest KxPointXYZ::calcDistance() to
/// another member is greater than `maxDist`. Distances that are NaN (between infinities) do not count; a member without
/// any other distance is not isolated. Takes O(m log m) for m members.
std::vector<int> isolatedPoints(const QList<KxPointXYZ>& points, const std::vector<int>& members, float maxDist);

} // namespace KxMath::detail
