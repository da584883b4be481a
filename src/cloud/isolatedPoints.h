// Points without a neighbour.
#pragma once

#include "cloud/numberedPoint.h"

#include <cstdint>
#include <vector>

namespace KxMath::detail {

/// Appends the numbers of the isolated members: those whose smallest KxPointXYZ::calcDistance() to another member is
/// greater than `maxDist`. No coordinate is NaN. Distances that are NaN (between infinities) do not count; a member
/// without any other distance is not isolated. Takes O(m log m) for m members.
void appendIsolated(std::vector<std::uint32_t>& isolated, const std::vector<NumberedPoint>& members, float maxDist);

} // namespace KxMath::detail
