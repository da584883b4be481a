// Sums over windows that slide along a sequence, each in its order.
#pragma once

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// Padding behind both buffers of windowSums(): it works in whole blocks, so that up to this many values behind the
/// last one are read, and as many extra sums written.
inline constexpr std::ptrdiff_t kWindowPadding = 32;

/// The `count` sums of `window` adjacent values: from `values` on, from the next one on, and so on. Each sum starts
/// with 0 and adds one value after the other.
void windowSums(const float* values, std::ptrdiff_t count, std::ptrdiff_t window, float* sums,
                InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
