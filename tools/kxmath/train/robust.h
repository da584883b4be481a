// Medians.
#pragma once

#include <algorithm>
#include <limits>
#include <vector>

namespace kxtool {

/// The median of finite values, the upper one of two in the middle; NaN for none.
inline double median(std::vector<double> values) {
    if (values.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace kxtool
