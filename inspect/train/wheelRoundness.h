// Whether the tread of a wheel is round, judged by all its profiles together.
#pragma once

#include "inspect/train/wheelSections.h"

#include <KxInspect/PassResult.h>

#include <KxMath/KxPrimitives.h>

#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// The shape of a wheel, or why it was not judged.
struct RoundnessVerdict {
    std::optional<Roundness> roundness;
    std::string reason; ///< empty when there is one
    TreadMap map = {}; ///< empty without one
};

/// Compares the tread around the tape circle, profile by profile, with a circle about the axle. The axle is the centre
/// of the circle of the flange tip, which no flat reaches.
/// @param wheels of one side of a pass; what they share, the laser plane and the scale of the places, each of them gets
/// from the others
std::vector<RoundnessVerdict> judgeRoundness(const std::vector<WheelView>& wheels, const DefectLimits& limits);

/// How far along the circumference from the place that stood on the rail when the axle passed the laser is what a profile
/// shows, forward positive: behind the axle the wheel has rolled by that distance, and the laser meets it as far behind
/// its bottom. Both in mm.
double arcOf(double fromAxle, double radius);

/// A profile is off when it is so many standard errors off. Far out in the tail of the normal distribution: some dozens of
/// values of a wheel could exceed it, which are not independent; in 10,000 wheels less than one does.
inline constexpr double kLimitErrors = 5.0;

/// Fewer profiles that show flange and tread than this are not judged.
inline constexpr int kFewestRadii = 6;

/// A wheel is not called round when a smaller deviation than this could have been noise, mm: a flat of 26 mm on a wheel
/// of 860 mm is as deep.
inline constexpr float kMostLimit = 0.2f;

} // namespace KxInspect::detail
