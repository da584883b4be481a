// The equivalent conicity, by the number of its amplitudes.
#include "railway/jobs.h"

#include "shapes/crossSections.h"

#include <memory>

namespace kxbench {

WheelSet& wheelSet() {
    static WheelSet set = [] {
        WheelSet made;
        kxtool::appendConicalWheel(made.wheel1, 0.05f);
        kxtool::appendConicalWheel(made.wheel2, 0.0625f);
        kxtool::appendRoundRail(made.rail1, 80.0f);
        kxtool::appendRoundRail(made.rail2, 80.0f);
        return made;
    }();
    return set;
}

namespace {

void calculate(ConicityJob& job, int amplitudes) {
    constexpr std::size_t kCapacity = 4096;
    WheelSet& set = wheelSet();
    KxMath::KxProfile conicity;
    KxMath::KxProfile deltaR;
    KxMath::KxProfile slope1;
    KxMath::KxProfile slope2;
    KxMath::KxProfile* placed[4] = {};
    std::vector<KxMath::KxProfile*> contacts1(kCapacity);
    std::vector<KxMath::KxProfile*> contacts2(kCapacity);
    int count1 = 0;
    int count2 = 0;
    KxMath::EquivalentConicity(set.wheel1, set.wheel2, set.rail1, set.rail2, set.radius, set.radius, set.railDistance,
                               set.wheelDistance, static_cast<unsigned int>(amplitudes), conicity, deltaR, slope1,
                               slope2, placed, contacts1.data(), count1, contacts2.data(), count2, set.edgeMargin);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count1); ++i) {
        delete contacts1[i];
        delete contacts2[i];
    }
    for (KxMath::KxProfile* const profile : placed) {
        delete profile;
    }
    for (const KxMath::KxPointXY& p : std::as_const(conicity.points)) {
        job.conicities.push_back(static_cast<double>(p.y));
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    addConicity("kx", calculate);
    return true;
}();

} // namespace

} // namespace kxbench
