// Sums over blocks that slide along the rows of a grid, each in its order.
#include "grid/blockSums.h"

#include "simd/vectors.h"

namespace KxMath::detail {

std::array<float, kBlocksPerCall> blockSums(const float* const* rows, std::ptrdiff_t rowCount, std::ptrdiff_t column,
                                            std::ptrdiff_t width, InstructionSet instructions) {
    std::array<float, kBlocksPerCall> results;
    runOn(instructions, [=, &results]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kLanes = Vectors<kBytes>::kFloatLanes;
        constexpr std::ptrdiff_t kUnroll = kBlocksPerCall / kLanes;
        std::array<Floats, static_cast<std::size_t>(kUnroll)> sums{};
        for (std::ptrdiff_t r = 0; r < rowCount; ++r) {
            const float* const cells = rows[r] + column;
            for (std::ptrdiff_t c = 0; c < width; ++c) {
                for (std::ptrdiff_t u = 0; u < kUnroll; ++u) {
                    sums[static_cast<std::size_t>(u)] += loadVector<Floats>(cells + c + kLanes * u);
                }
            }
        }
        for (std::ptrdiff_t u = 0; u < kUnroll; ++u) {
            storeVector(results.data() + kLanes * u, sums[static_cast<std::size_t>(u)]);
        }
    });
    return results;
}

} // namespace KxMath::detail
