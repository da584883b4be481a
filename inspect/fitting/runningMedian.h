// Medians over a window that moves along a series.
#pragma once

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// The median of each value and the `half` values on either side of it; those with fewer neighbours stay as they are. The
/// time goes with n log n, whatever the window.
/// @param values without NaN
std::vector<double> runningMedian(const std::vector<double>& values, std::size_t half);

} // namespace KxInspect::detail
