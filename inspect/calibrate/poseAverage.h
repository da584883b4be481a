// The mean of the poses of several profiles.
#pragma once

#include <KxInspect/Calibration.h>

namespace KxInspect::detail {

/// Averages the poses that were found.
/// @param findsY whether the profiles tell y; otherwise it has no spread
PoseAverage averagePoses(const std::vector<ProfilePose>& profiles, bool findsY);

} // namespace KxInspect::detail
