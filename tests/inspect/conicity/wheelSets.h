// Wheel-sets of cones on round rails, unequal on every side.
#pragma once

#include "shapes/crossSections.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/KxMathTypes.h>

#include <gtest/gtest.h>

namespace conicity_test {

using namespace KxInspect;

constexpr float kSlope1 = 0.05f, kSlope2 = 0.12f;
constexpr float kRailRadius1 = 80.0f, kRailRadius2 = 110.0f;

inline Profile wheel(float slope) {
    KxMath::KxProfile profile;
    kxtool::appendConicalWheel(profile, slope);
    return fromKxProfile(profile);
}

inline Profile rail(float radius) {
    KxMath::KxProfile profile;
    kxtool::appendRoundRail(profile, radius);
    return fromKxProfile(profile);
}

inline ConicityInput coneInput() {
    ConicityInput input;
    const PerWheelSetPart<Profile> profiles = {wheel(kSlope1), rail(kRailRadius1), wheel(kSlope2), rail(kRailRadius2)};
    for (std::size_t part = 0; part < profiles.size(); ++part) {
        input.sections[part].file = "folder/" + std::string(1, static_cast<char>('a' + part)) + ".csv";
        input.sections[part].profile = profiles[part];
    }
    input.gauge = 1442.0f;
    input.gaugeDepth = 0.0f;
    // The centred wheels touch their rails 0.995 mm and 10.106 mm inside the tape circle: at 0.050 mm and 1.213 mm more
    // than its radius. With these radii they are then equally large.
    input.radius1 = 461.0f;
    input.radius2 = 459.837f;
    return input;
}

} // namespace conicity_test
