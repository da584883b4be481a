// Sums over blocks that slide along the rows of a grid, each in its order.
#pragma once

#include "simd/instructionSets.h"

#include <array>
#include <cstddef>

namespace KxMath::detail {

/// So many neighbouring blocks are summed side by side.
inline constexpr int kBlocksAtOnce = 32;

/// Sums of kBlocksAtOnce blocks, the first one `width` cells wide from `column` on and each next one a column further
/// to the right. Each begins with 0 and adds the cells of one row after the other.
/// @param rows the first cells of `rowCount` rows, which reach kBlocksAtOnce - 1 cells beyond the first block
std::array<float, kBlocksAtOnce> blockSums(const float* const* rows, std::ptrdiff_t rowCount, std::ptrdiff_t column,
                                           std::ptrdiff_t width, InstructionSet instructions);

} // namespace KxMath::detail
