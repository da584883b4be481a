// What one profile shows of the calibration object.
#pragma once

#include "inspect/calibrate/trackPose.h"

namespace KxInspect::detail {

/// Looks for the object in a profile, in the direction of the placement first, then in the other one.
Sighting sight(const NamedProfile& profile, const CalibrationTask& task);

/// The result for one profile.
ProfilePose poseOf(const NamedProfile& profile, const Sighting& sighting, const Axes& axes, const CalibrationTask& task,
                   const CalibrationTerms& terms);

} // namespace KxInspect::detail
