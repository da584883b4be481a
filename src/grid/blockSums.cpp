// Sums over blocks that slide along the rows of a grid, each in its order.
#include "grid/blockSums.h"

#include "simd/vectors.h"

namespace KxMath::detail {

std::array<float, kBlocksAtOnce> blockSums(const float* const* rows, std::ptrdiff_t rowCount, std::ptrdiff_t column,
                                           std::ptrdiff_t width, InstructionSet instructions) {
    std::array<float, kBlocksAtOnce> results;
    runOn(instructions, [=, &results]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kFloats = Vectors<kBytes>::kFloats;
        constexpr std::size_t kGroups = static_cast<std::size_t>(kBlocksAtOnce / kFloats);
        std::array<Floats, kGroups> sums{};
        for (std::ptrdiff_t r = 0; r < rowCount; ++r) {
            const float* const cells = rows[r] + column;
            for (std::ptrdiff_t c = 0; c < width; ++c) {
                for (std::size_t group = 0; group < kGroups; ++group) {
                    sums[group] += loadVector<Floats>(cells + c + kFloats * static_cast<std::ptrdiff_t>(group));
                }
            }
        }
        for (std::size_t group = 0; group < kGroups; ++group) {
            storeVector(results.data() + kFloats * static_cast<std::ptrdiff_t>(group), sums[group]);
        }
    });
    return results;
}

} // namespace KxMath::detail
