// The mean of poses that several profiles of one pose gave.
#pragma once

#include <KxInspect/Calibration.h>

namespace KxInspect::detail {

/// Averages the poses that were found.
PoseAverage averagePoses(const std::vector<ProfilePose>& profiles);

} // namespace KxInspect::detail
