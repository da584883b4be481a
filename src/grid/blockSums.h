// Sums over blocks that slide along the rows of a grid, each in its order.
#pragma once

#include "simd/instructionSets.h"

#include <array>
#include <cstddef>

namespace KxMath::detail {

/// The number of adjacent blocks that are summed by one call.
inline constexpr int kBlocksPerCall = 32;

/// Sums of kBlocksPerCall blocks, the first one `width` cells wide from `column` on and each next one a column further
/// to the right. Each begins with 0 and adds the cells of one row after the other.
/// @param rows the first cells of `rowCount` rows, which reach kBlocksPerCall - 1 cells beyond the first block
std::array<float, kBlocksPerCall> blockSums(const float* const* rows, std::ptrdiff_t rowCount, std::ptrdiff_t column,
                                            std::ptrdiff_t width, InstructionSet instructions);

} // namespace KxMath::detail
