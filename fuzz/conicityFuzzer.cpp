// The equivalent conicity of more or less well-formed wheels and rails.
#include "input.h"

#include "shapes/crossSections.h"

#include <KxMath/KxConicity.h>

#include <memory>
#include <vector>

using namespace KxMath;
using kxfuzz::Input;

namespace {

using Owned = std::vector<std::unique_ptr<KxProfile>>;

/// Points made from the bytes only, or a real shape with some changed points.
void fill(KxProfile& profile, bool isWheel, Input& in) {
    const std::uint8_t shape = in.byte();
    if (shape % 4 == 0) {
        kxfuzz::appendPoints(profile.points, in, 60, &Input::pointXY);
        return;
    }
    if (isWheel) {
        kxtool::appendConicalWheel(profile, static_cast<float>(shape % 16) / 80.0f);
    } else {
        kxtool::appendRoundRail(profile, 32.0f + static_cast<float>(shape));
    }
    // Smaller than real profiles, which allows more runs.
    profile.resize(static_cast<float>(in.byte() % 8 + 1) / 16.0f, 1.0f, 1.0f);
    for (int n = in.byte() % 8; n > 0; --n) {
        KxPointXY& p = profile.points[in.take<std::uint16_t>() % profile.points.size()];
        const KxPointXY by = in.pointXY();
        p = in.yes() ? by : KxPointXY(p.x, p.y + by.y);
    }
    if (shape % 16 == 5) {
        profile.points.resize(in.byte() % profile.points.size() + 1);
    }
}

/// A track distance, mostly near a suitable one.
float distance(float usual, Input& in) {
    const float change = in.number();
    return in.byte() % 8 == 0 ? change : usual + change;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    Input in(data, size);
    KxProfile wheel1, wheel2, rail1, rail2;
    fill(wheel1, true, in);
    fill(rail1, false, in);
    const bool isAlike = in.yes();
    wheel2 = wheel1;
    rail2 = rail1;
    if (!isAlike) {
        wheel2.clear();
        rail2.clear();
        fill(wheel2, true, in);
        fill(rail2, false, in);
    }
    const float radius1 = distance(460.0f, in);
    const float radius2 = distance(460.0f, in);
    const float railDistance = distance(1442.0f, in);
    const float wheelDistance = distance(1360.0f, in);
    // If splines overshoot, each of 100000 amplitudes takes a sum over as many points.
    const auto amplitudes = static_cast<unsigned>(in.byte() % 64);
    constexpr size_t kCapacity = 10100; // points of a wheel 1 m wide, every 0.1 mm
    std::vector<KxProfile*> contacts1(kCapacity), contacts2(kCapacity);
    KxProfile* placed[4] = {};
    int count1 = 0;
    int count2 = 0;
    KxProfile conicity, deltaR, slope1, slope2;
    const int result = EquivalentConicity(wheel1, wheel2, rail1, rail2, radius1, radius2, railDistance, wheelDistance,
                                          amplitudes, conicity, deltaR, slope1, slope2, placed, contacts1.data(),
                                          count1, contacts2.data(), count2, in.number());
    const Owned own(placed, placed + 4);
    const Owned own1(contacts1.data(), contacts1.data() + count1);
    const Owned own2(contacts2.data(), contacts2.data() + count2);
    kxfuzz::require(result == -1 || result == conicity.size());
    kxfuzz::require(count1 == count2 && deltaR.size() == count1 && slope1.size() == count1 && slope2.size() == count1);
    return 0;
}
