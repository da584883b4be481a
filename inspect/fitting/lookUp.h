// The value of a curve between its points.
#pragma once

#include <KxInspect/Profile.h>

#include <vector>

namespace KxInspect::detail {

/// The value at `x` of a curve ordered by x, on the straight line between its neighbours, in double precision (the
/// core's own look-up fits a line in single precision, which loses digits where points are close); NaN outside.
double valueAt(const std::vector<Point>& curve, double x);

} // namespace KxInspect::detail
