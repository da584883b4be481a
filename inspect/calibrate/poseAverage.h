// The mean of the poses of several profiles.
#pragma once

#include <KxInspect/Calibration.h>

namespace KxInspect::detail {

/// The standard deviations within which 95 % of normal values stay.
inline constexpr double kNormal95 = 1.959964;

/// Averages the poses that were found.
/// @param findsY whether the placement finds y; otherwise the mean keeps that of the profiles, given or NaN
PoseAverage averagePoses(const std::vector<ProfilePose>& profiles, bool findsY);

} // namespace KxInspect::detail
