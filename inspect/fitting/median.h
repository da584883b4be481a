// Medians.
#pragma once

#include <algorithm>
#include <limits>
#include <vector>

namespace KxInspect::detail {

/// The median of values that contain no NaN, the upper one of two in the middle; `ifEmpty` without values. Changes their
/// order.
template <typename Value>
Value medianInPlace(std::vector<Value>& values, Value ifEmpty = std::numeric_limits<Value>::quiet_NaN()) {
    if (values.empty()) {
        return ifEmpty;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// As above, of a copy.
template <typename Value>
Value median(std::vector<Value> values, Value ifEmpty = std::numeric_limits<Value>::quiet_NaN()) {
    return medianInPlace(values, ifEmpty);
}

} // namespace KxInspect::detail
