// Conversions between number types that are defined for every value.
#pragma once

#include <limits>

namespace KxMath::detail {

/// The integer part of `v`; NaN and values beyond the range of int give the smallest int.
inline int truncToInt(double v) {
    constexpr double kLimit = 2147483648.0;
    if (v > -kLimit - 1.0 && v < kLimit) { // NaN: false
        return static_cast<int>(v);
    }
    return std::numeric_limits<int>::min();
}

} // namespace KxMath::detail
