// Whether the tread of a wheel is round, judged by all its profiles together.
#pragma once

#include "inspect/train/axleYaw.h"
#include "inspect/train/wheelCollector.h"

#include <KxInspect/PassResult.h>

#include <KxMath/KxPrimitives.h>

#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// A wheel to judge: its profiles, in parallel lists.
struct WheelView {
    const std::vector<PointList>& profiles; ///< whole
    const std::vector<PointList>& treads; ///< what lies between the lines, cutTread()
    const std::vector<float>& places; ///< along the pass, mm
    KxMath::KxLine reference; ///< trace of the back face
    Askew askew = {}; ///< how the wheel stands
};

/// The shape of a wheel, or why it was not judged.
struct RoundnessVerdict {
    std::optional<Roundness> roundness;
    std::string reason; ///< empty when there is one
};

/// Compares the tread around the tape circle, profile by profile, with a circle about the axle. The axle is the centre
/// of the circle of the flange tip, which no flat reaches.
RoundnessVerdict judgeRoundness(const WheelView& wheel, const DefectLimits& limits);

/// Fewer profiles that show flange and tread than this are not judged.
inline constexpr int kFewestRadii = 10;

} // namespace KxInspect::detail
