// Prints how far the conicity of cones comes out from their slope, over the edge margin and the amplitude.
#include "inspect/fitting/lookUp.h"
#include "shapes/crossSections.h"

#include <KxMath/KxConicity.h>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

using KxMath::KxProfile;

/// The conicity curve of a wheel-set of cones on round rails.
void calculate(float slope, float edgeMargin, KxProfile& conicity) {
    KxProfile wheel;
    KxProfile rail;
    kxtool::appendConicalWheel(wheel, slope);
    kxtool::appendRoundRail(rail, 80.0f);
    constexpr size_t kRoom = 20000;
    std::vector<KxProfile*> contacts1(kRoom);
    std::vector<KxProfile*> contacts2(kRoom);
    KxProfile* placed[4] = {};
    int count1 = 0;
    int count2 = 0;
    KxProfile deltaR;
    KxProfile slope1;
    KxProfile slope2;
    KxMath::EquivalentConicity(wheel, wheel, rail, rail, 460.0f, 460.0f, 1442.0f, 1360.0f, 1000, conicity, deltaR,
                               slope1, slope2, placed, contacts1.data(), count1, contacts2.data(), count2, edgeMargin);
    for (size_t i = 0; i < static_cast<size_t>(count1); ++i) {
        delete contacts1[i];
        delete contacts2[i];
    }
    for (KxProfile* const profile : placed) {
        delete profile;
    }
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
            KxProfile conicity;
            calculate(slope, margin, conicity);
            std::printf("| %g | %g |", static_cast<double>(slope), static_cast<double>(margin));
            for (const float amplitude : kAmplitudes) {
                const double expected = static_cast<double>(slope);
                const double value = KxInspect::detail::valueAt(conicity, static_cast<double>(amplitude));
                const double error = (value - expected) / expected * 100.0;
                std::isnan(error) ? std::printf(" - |") : std::printf(" %+.2f %% |", error);
            }
            std::printf("\n");
        }
    }
    return 0;
}
