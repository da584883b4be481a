// Prints how far the conicity of cones comes out from their slope, over the edge margin and the amplitude.
#include "shapes/crossSections.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/KxMathTypes.h>

#include <cstdio>

namespace {

/// The conicity of a wheel-set of cones on round rails.
KxInspect::ConicityResult calculate(float slope, float edgeMargin) {
    KxMath::KxProfile wheel;
    KxMath::KxProfile rail;
    kxtool::appendConicalWheel(wheel, slope);
    kxtool::appendRoundRail(rail, 80.0f);
    KxInspect::ConicityInput input;
    for (const auto part : {KxInspect::Wheel1, KxInspect::Rail1, KxInspect::Wheel2, KxInspect::Rail2}) {
        input.sections[part].profile = KxInspect::fromKxProfile(isWheel(part) ? wheel : rail);
    }
    input.gauge = 1442.0f;
    input.gaugeDepth = 0.0f;
    input.flangeBack1 = input.flangeBack2 = 0.0f; // there x begins
    input.amplitudes = 1000;
    input.edgeMargin = edgeMargin;
    return measureConicity(input);
}

} // namespace

int main() {
    constexpr float kAmplitudes[] = {1.0f, 2.0f, 3.0f, 5.0f, 7.0f};
    std::printf("| slope | edge margin, mm |");
    for (const float amplitude : kAmplitudes) {
        std::printf(" %g mm |", static_cast<double>(amplitude));
    }
    std::printf("\n| --- | --- | --- | --- | --- | --- | --- |\n");
    for (const float slope : {0.025f, 0.05f, 0.1f, 0.2f, 0.4f}) {
        for (const float margin : {0.0001f, 0.001f, 0.01f, 0.1f}) {
            const KxInspect::ConicityResult result = calculate(slope, margin);
            std::printf("| %g | %g |", static_cast<double>(slope), static_cast<double>(margin));
            for (const float amplitude : kAmplitudes) {
                const double expected = static_cast<double>(slope);
                if (const auto value = conicityAt(result, amplitude)) {
                    std::printf(" %+.2f %% |", (static_cast<double>(*value) - expected) / expected * 100.0);
                } else {
                    std::printf(" - |");
                }
            }
            std::printf("\n");
        }
    }
    return 0;
}
