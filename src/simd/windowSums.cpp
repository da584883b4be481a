// Sums over windows that slide along a sequence, each in its order.
#include "simd/windowSums.h"

#include "simd/vectors.h"

#include <array>

namespace KxMath::detail {

// A running sum (add the next value, subtract the first one) would take fewer additions, but rounds differently. Here
// each lane adds up a window of its own, in the order of the definition.
void windowSums(const float* values, std::ptrdiff_t count, std::ptrdiff_t window, float* sums,
                InstructionSet instructions) {
    runOn(instructions, [=]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kLanes = Vectors<kBytes>::kFloatLanes;
        constexpr std::ptrdiff_t kUnroll = 4; // independent sums: an addition does not wait for the one before
        constexpr std::ptrdiff_t kBlock = kLanes * kUnroll;
        static_assert(kBlock <= kWindowPadding);
        for (std::ptrdiff_t i = 0; i < count; i += kBlock) {
            std::array<Floats, kUnroll> block{};
            for (std::ptrdiff_t k = i; k < i + window; ++k) {
                for (std::ptrdiff_t u = 0; u < kUnroll; ++u) {
                    block[static_cast<std::size_t>(u)] += loadVector<Floats>(values + k + kLanes * u);
                }
            }
            for (std::ptrdiff_t u = 0; u < kUnroll; ++u) {
                storeVector(sums + i + kLanes * u, block[static_cast<std::size_t>(u)]);
            }
        }
    });
}

} // namespace KxMath::detail
