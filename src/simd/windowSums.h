// Sums over windows that slide along a sequence, each in its order.
#pragma once

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// So many sums more than asked for may be written, and as many values more read: they come in whole blocks.
inline constexpr std::ptrdiff_t kWindowRoom = 32;

/// Sums of `window` values: of those from `values` on, from the next one on, and so on, `count` of them. Each begins
/// with 0 and adds one value after the other.
void windowSums(const float* values, std::ptrdiff_t count, std::ptrdiff_t window, float* sums,
                InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
