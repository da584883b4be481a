// A calibration of a simulated sensor and its errors.
#pragma once

#include "simulator/calibrationProfile.h"

namespace kxsim {

struct CalibrationTrial {
    bool isInView; ///< all ridges of the object
    bool isDone; ///< what the calibration returned
    double angleError; ///< largest error of an angle in degrees, modulo 360
    double pointError; ///< largest distance of a point transformed by the result from its true position, noise included
};

/// Takes a profile of the object and calibrates the sensor with it. The record holds the true y for placements whose y
/// the calibration does not find.
CalibrationTrial tryCalibration(const CalibrationObject& object, int placement, const Pose& pose,
                                const CalibrationSensor& sensor, Random& random);

} // namespace kxsim
