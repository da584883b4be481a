// Values that change at once.
#pragma once

#include <vector>

namespace kxfleet {

/// Whether two levels, of two values or more each, describe values much better than a line does: their sum of squares is
/// below the half of its. With fewer than four values: no.
/// @param residuals what the values are off the line, in parallel with them
bool isStep(const std::vector<double>& values, const std::vector<double>& residuals);

} // namespace kxfleet
