// Whether the tread of a wheel is round, judged by all its profiles together.
#pragma once

#include "inspect/train/wheelCollector.h"

#include <KxInspect/PassResult.h>

#include <KxMath/KxPrimitives.h>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A wheel to judge: its profiles, in parallel lists.
struct WheelView {
    const std::vector<PointList>& profiles; ///< whole
    const std::vector<PointList>& treads; ///< what lies between the lines, cutTread()
    const std::vector<float>& places; ///< along the pass, mm
    KxMath::KxLine reference; ///< trace of the back face
};

/// Compares the tread around the tape circle, profile by profile, with a circle about the axle. The axle is the centre
/// of the circle of the flange tip, which no flat reaches.
/// @return nothing when too few profiles show flange and tread, or the tips give no circle
std::optional<Roundness> judgeRoundness(const WheelView& wheel, const DefectLimits& limits);

/// The tread that is compared: distances behind the reference line, mm.
inline constexpr double kRoundFrom = 45.0;
inline constexpr double kRoundTo = 95.0;

/// Fewer profiles that show flange and tread than this are not judged.
inline constexpr int kFewestRadii = 10;

} // namespace KxInspect::detail
