// The mean of the poses of several profiles.
#pragma once

#include <KxInspect/Calibration.h>

namespace KxInspect::detail {

/// Averages the poses that were found.
PoseAverage averagePoses(const std::vector<ProfilePose>& profiles);

} // namespace KxInspect::detail
