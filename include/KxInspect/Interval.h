// How far a measured value may be off.
#pragma once

#include <limits>

namespace KxInspect {

/// The 95 % confidence interval of a measured value, in the unit of the value: in 95 of 100 measurements it holds the
/// true value. Both ends are NaN where there is no value, or where its uncertainty is unknown.
struct Interval {
    float low = std::numeric_limits<float>::quiet_NaN();
    float high = std::numeric_limits<float>::quiet_NaN();

    bool isKnown() const { return low <= high; } ///< NaN: false
    bool holds(float value) const { return low <= value && value <= high; } ///< the ends included; NaN: false

    /// From value - halfWidth to value + halfWidth; unknown when one of them is NaN or `halfWidth` is negative.
    static Interval around(float value, float halfWidth) {
        return halfWidth >= 0.0f && value == value ? Interval{value - halfWidth, value + halfWidth} : Interval{};
    }
    bool operator==(const Interval& other) const {
        return low == other.low && high == other.high;
    } ///< NaN equals nothing
};

} // namespace KxInspect
