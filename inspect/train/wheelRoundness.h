// Whether the tread of a wheel is round, told from all its profiles together.
#pragma once

#include "inspect/train/wheelDefects.h"

#include <functional>
#include <vector>

namespace kxtool {

/// The radius of the tread in one profile.
struct RadiusDeviation {
    int profile; ///< its number, from 1
    float place; ///< of the profile before (negative) or behind the axle, mm
    float deviation; ///< from the circle of the whole wheel, mm
};

/// The verdict over one wheel.
struct WheelRoundness {
    std::vector<RadiusDeviation> radii; ///< of the profiles that show flange and tread; empty when nothing is judged
    float flangeRadius = 0.0f; ///< of the tip, mm
    float scatter = 0.0f; ///< of the tips about their circle, as a standard deviation, mm
    std::vector<int> profiles; ///< the numbers of those that stand off the circle together
    float largest = 0.0f; ///< what the profiles of a run are off at least, of all runs the most, mm
    bool isOut = false;

    bool isJudged() const { return !radii.empty(); }
};

/// A wheel to judge.
struct WheelView {
    std::function<KxMath::KxProfile(int)> read; ///< gives a profile by its number from 1 on
    std::vector<float> places; ///< of the profiles along the pass, mm
    KxMath::KxLine reference; ///< trace of the back face
    DefectLines lines;
};

/// Compares the tread around the tape circle, profile by profile, with a circle about the axle. The axle is the centre
/// of the circle of the flange tip, which no flat reaches.
WheelRoundness judgeRoundness(const WheelView& wheel, const DefectLimits& limits);

/// The tread that is compared: distances behind the reference line, mm.
inline constexpr double kRoundFrom = 45.0;
inline constexpr double kRoundTo = 95.0;

/// Fewer profiles that show flange and tread than this are not judged.
inline constexpr int kFewestRadii = 10;

} // namespace kxtool
