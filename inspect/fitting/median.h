// Medians.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <vector>

namespace KxInspect::detail {

/// The value that is at `rank` in ascending order, of values that contain no NaN. Changes their order.
double valueAt(std::vector<double>& values, std::size_t rank);

/// The median of values that contain no NaN, the upper one of two in the middle; `ifEmpty` without values. Changes their
/// order.
template <typename Value>
Value medianInPlace(std::vector<Value>& values, Value ifEmpty = std::numeric_limits<Value>::quiet_NaN()) {
    if (values.empty()) {
        return ifEmpty;
    }
    const std::size_t rank = values.size() / 2;
    if constexpr (std::is_same_v<Value, double>) {
        return valueAt(values, rank);
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// As above, of a copy.
template <typename Value>
Value median(std::vector<Value> values, Value ifEmpty = std::numeric_limits<Value>::quiet_NaN()) {
    return medianInPlace(values, ifEmpty);
}

} // namespace KxInspect::detail
