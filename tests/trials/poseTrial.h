// The pose of a simulated sensor as the measuring finds it, beside the true one.
#pragma once

#include "simulator/calibrationProfile.h"

#include <KxInspect/Calibration.h>

namespace kxsim {

/// A sensor in front of the calibration object, and what its operator says of it.
struct PoseTrialSetup {
    int placement = 2; ///< the true one
    CalibrationObject object = KxInspect::calibrationObjectFor(2);
    Pose pose;
    CalibrationSensor sensor;
    KxInspect::CalibrationTask task; ///< what is said
    std::vector<std::array<double, 3>> moves = {{0.0, 0.0, 0.0}}; ///< of the object, a profile each
};

/// A sensor about the nominal pose of a placement: every angle turned by up to 10 degrees, moved by up to `offset` mm
/// along each axis. The task says the truth.
PoseTrialSetup randomSetup(int placement, const CalibrationSensor& sensor, double offset, Random& random);

/// On which side of the crests a sensor stands.
KxInspect::SensorSide sideOf(const Pose& pose, const CalibrationObject& object);

struct PoseTrial {
    bool isInView = true; ///< all ridges of the object, in all profiles
    KxInspect::CalibrationResult result;
    KxInspect::SensorPose truth;

    /// The difference of a value from the truth, of angles modulo 360 degrees; y is that of the object.
    double error(const KxInspect::PoseField& field) const;
    /// The largest errors of an angle and of a place.
    double angleError() const;
    double placeError() const;
    /// The interval of a value holds the truth.
    bool holds(const KxInspect::PoseField& field) const;
};

/// Takes the profiles and measures the pose.
PoseTrial tryPose(const PoseTrialSetup& setup, Random& random);

} // namespace kxsim
