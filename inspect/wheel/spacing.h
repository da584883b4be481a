// The points of a profile at equal distances.
#pragma once

#include <KxInspect/Profile.h>

#include <vector>

namespace KxInspect::detail {

/// Resamples a profile linearly between its finite points, in their order, at `spacing` along the profile; keeps the
/// first and the last point.
/// @return false, with the points unchanged, for more than a million points
bool spaceEvenly(std::vector<Point>& points, double spacing);

} // namespace KxInspect::detail
