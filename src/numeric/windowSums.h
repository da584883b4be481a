// Sums over windows that slide along a sequence, each in its order.
#pragma once

#include "numeric/float4.h"

#include <array>
#include <cstddef>

namespace KxMath::detail {

/// Windows that are summed side by side: each sum keeps its order, and none waits for another one.
inline constexpr std::ptrdiff_t kWindowsAtOnce = 16;

using WindowSums = std::array<Float4, kWindowsAtOnce / 4>;

inline float sumAt(const WindowSums& sums, std::ptrdiff_t i) {
    return sums[static_cast<std::size_t>(i / 4)][i % 4];
}

/// Sums of `count` values: of those from `values` on, from the next one on, and so on. Reads `kWindowsAtOnce` - 1
/// values behind the first window.
inline WindowSums windowSums(const float* values, std::ptrdiff_t count) {
    WindowSums sums{};
    for (std::ptrdiff_t k = 0; k < count; ++k) {
        for (std::size_t group = 0; group < sums.size(); ++group) {
            sums[group] += loadFloat4(values + k + 4 * static_cast<std::ptrdiff_t>(group));
        }
    }
    return sums;
}

} // namespace KxMath::detail
