// Polar form of many points at once.
#include "simd/blockPolar.h"

#include "rounding/angles.h"
#include "simd/blockTrigonometry.h"

#include <array>

namespace KxMath::detail {

namespace {

using Portion = std::array<float, kPolarPortion>;

} // namespace

void toPolar(float* as, float* bs, std::ptrdiff_t count, InstructionSet instructions) {
    Portion quotients{};
    Portion angles{};
    runOn(instructions, [=, &quotients](auto) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            quotients[static_cast<std::size_t>(i)] = bs[i] / as[i];
        }
    });
    atanOf(quotients.data(), count, angles.data(), instructions);
    runOn(instructions, [=, &angles](auto) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            const float a = as[i];
            const float b = bs[i];
            as[i] = polarRadius(a, b);
            bs[i] = polarAngleDeg(a, b, toDegrees(angles[static_cast<std::size_t>(i)]));
        }
    });
}

void fromPolar(float* radii, float* degrees, std::ptrdiff_t count, InstructionSet instructions) {
    Portion sines{};
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        degrees[i] = toRadians(degrees[i]);
    }
    sinesAndCosinesOf(degrees, count, sines.data(), degrees, instructions);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const float radius = radii[i];
        radii[i] = degrees[i] * radius;
        degrees[i] = sines[static_cast<std::size_t>(i)] * radius;
    }
}

} // namespace KxMath::detail
