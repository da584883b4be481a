// Polar form of a block of points.
#include "simd/blockPolar.h"

#include "rounding/angles.h"
#include "simd/blockTrigonometry.h"
#include "simd/float4.h"

#include <algorithm>
#include <array>

namespace KxMath::detail {

namespace {

constexpr std::ptrdiff_t kPadding = 8; // the last vector of a block may be filled in part only
using Block = std::array<float, kPolarBlock + kPadding>;

Block blockOf(const float* values, std::ptrdiff_t count) {
    Block block{};
    std::copy_n(values, count, block.begin());
    return block;
}

/// polarAngleDeg(a, b, toDegrees(angle)) in each lane: the conditions in their order, the last one innermost.
template <typename Doubles>
[[gnu::always_inline]] inline Doubles polarAngles(Doubles a, Doubles b, Doubles angle) {
    const Doubles zero{};
    const Doubles degrees = angle * 180.0 / kPi;
    const Doubles right = select(b >= zero, degrees, select(b < zero, degrees + 360.0, zero)); // NaN: 0
    const Doubles onAxis = select(b > zero, zero + 90.0, select(b < zero, zero + 270.0, zero));
    return select(a < zero, 180.0 + degrees, select(a > zero, right, select(a == zero, onAxis, zero)));
}

} // namespace

void toPolar(float* as, float* bs, std::ptrdiff_t count, InstructionSet instructions) {
    const Block a = blockOf(as, count);
    const Block b = blockOf(bs, count);
    Block quotients{};
    Block angles{};
    Block radii{};
    runOn(instructions, [=, &a, &b, &quotients, &radii]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Floats = typename Vectors<kBytes>::Floats;
        constexpr std::ptrdiff_t kLanes = Vectors<kBytes>::kFloatLanes;
        static_assert(kLanes <= kPadding);
        for (std::ptrdiff_t i = 0; i < count; i += kLanes) {
            const Floats va = loadVector<Floats>(a.data() + i);
            const Floats vb = loadVector<Floats>(b.data() + i);
            storeVector(quotients.data() + i, vb / va);
            storeVector(radii.data() + i, rootOf(vb * vb + va * va)); // polarRadius()
        }
    });
    atanOf(quotients.data(), count, angles.data(), instructions);
    runOn(instructions, [=, &a, &b, &angles]<std::size_t kBytes>(VectorBytes<kBytes>) {
        using Doubles = typename Vectors<kBytes>::Doubles;
        constexpr std::ptrdiff_t kLanes = Vectors<kBytes>::kDoubleLanes;
        for (std::ptrdiff_t i = 0; i < count; i += kLanes) {
            const Doubles va = loadAsDoubles<Doubles>(a.data() + i);
            const Doubles vb = loadAsDoubles<Doubles>(b.data() + i);
            const Doubles angle = loadAsDoubles<Doubles>(angles.data() + i);
            storeAsFloats(angles.data() + i, polarAngles(va, vb, angle));
        }
    });
    std::copy_n(radii.begin(), count, as);
    std::copy_n(angles.begin(), count, bs);
}

void fromPolar(float* radii, float* degrees, std::ptrdiff_t count, InstructionSet instructions) {
    Block radians{};
    Block sines{};
    Block cosines{};
    std::transform(degrees, degrees + count, radians.begin(), toRadians);
    sinesAndCosinesOf(radians.data(), count, sines.data(), cosines.data(), instructions);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const float radius = radii[i];
        radii[i] = cosines[static_cast<std::size_t>(i)] * radius;
        degrees[i] = sines[static_cast<std::size_t>(i)] * radius;
    }
}

} // namespace KxMath::detail
