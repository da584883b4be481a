// Residuals: distances of the points of a profile from the calibration object.
#pragma once

#include <KxInspect/Calibration.h>

namespace KxInspect::detail {

/// Points in the track frame, transformed by a pose.
std::vector<Point3> toTrack(const std::vector<CalibrationPoint>& points, const SensorPose& pose);

/// Fills in flanks and residuals of the points, rms, and the residuals by flank of a profile with a pose and foundY.
void findResiduals(const CalibrationTask& task, ProfilePose& profile);

/// The residuals of several profiles together.
FlankResiduals pooled(const std::vector<ProfilePose>& profiles);

} // namespace KxInspect::detail
