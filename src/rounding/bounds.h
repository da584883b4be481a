// Ranges and bounds in which NaN means unknown or switched off.
#pragma once

#include <cmath>
#include <limits>

namespace KxMath::detail {

inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Widens [min, max] by `v`. A NaN `v` becomes a bound only while that bound is unknown.
inline void widen(float& min, float& max, float v) {
    if (std::isnan(min) || min > v) {
        min = v;
    }
    if (std::isnan(max) || max < v) {
        max = v;
    }
}

/// Takes over the bounds of another range where they are wider. Unknown bounds on either side change nothing.
inline void mergeRange(float& min, float& max, float otherMin, float otherMax) {
    if (min > otherMin) { // NaN: false
        min = otherMin;
    }
    if (max < otherMax) { // NaN: false
        max = otherMax;
    }
}

/// True when `v` passes both bounds; a NaN bound is switched off, a NaN `v` fails a bound that is not.
inline bool isInside(float v, float min, float max) {
    return (std::isnan(min) || min <= v) && (std::isnan(max) || v <= max);
}

} // namespace KxMath::detail
