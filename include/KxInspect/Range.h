// A range of numbers.
#pragma once

#include <limits>

namespace KxInspect {

/// From the smallest to the largest of some numbers, both NaN where there are none.
struct Range {
    float min = std::numeric_limits<float>::quiet_NaN();
    float max = std::numeric_limits<float>::quiet_NaN();

    bool isEmpty() const { return !(min <= max); } ///< NaN: empty

    /// Grows to hold a number. NaN is ignored.
    void include(float value) {
        min = value < min || min != min ? value : min;
        max = value > max || max != max ? value : max;
    }
    bool operator==(const Range& other) const { return min == other.min && max == other.max; } ///< NaN equals nothing
};

} // namespace KxInspect
