// The points of a profile at equal distances.
#pragma once

#include <KxInspect/Profile.h>

#include <vector>

namespace KxInspect::detail {

/// Puts points `spacing` apart on the straight lines between finite points of a profile in their order, the length
/// being counted along the profile; the first and the last point stay.
/// @return false, nothing changed, when that would be more than a million points
bool spaceEvenly(std::vector<Point>& points, double spacing);

} // namespace KxInspect::detail
