// Sums over windows that slide along a sequence, each in its order.
#include "simd/windowSums.h"

#include "simd/vectors.h"

#include <array>

namespace KxMath::detail {

void windowSums(const float* values, std::ptrdiff_t count, std::ptrdiff_t window, float* sums,
                InstructionSet instructions) {
    runOn(instructions, [=]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kFloats = Vectors<kBytes>::kFloats;
        constexpr std::size_t kGroups = 4; // side by side: no sum waits for another one
        static_assert(kFloats * static_cast<std::ptrdiff_t>(kGroups) <= kWindowRoom);
        for (std::ptrdiff_t i = 0; i < count; i += kFloats * static_cast<std::ptrdiff_t>(kGroups)) {
            std::array<Floats, kGroups> block{};
            for (std::ptrdiff_t k = i; k < i + window; ++k) {
                for (std::size_t group = 0; group < kGroups; ++group) {
                    block[group] += loadVector<Floats>(values + k + kFloats * static_cast<std::ptrdiff_t>(group));
                }
            }
            for (std::size_t group = 0; group < kGroups; ++group) {
                storeVector(sums + i + kFloats * static_cast<std::ptrdiff_t>(group), block[group]);
            }
        }
    });
}

} // namespace KxMath::detail
