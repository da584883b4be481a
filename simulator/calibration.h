// The poses of the sensors and the lines of an ideal calibration.
#pragma once

#include "simulator/parameters.h"
#include "simulator/pose.h"

namespace kxsim {

/// 1 for a sensor that sees the left wheels, -1 for the others. Without a layout the first one sees the left wheels.
int sideOf(const Parameters& parameters, int sensor);

/// Where a sensor looks from; between the rails without a layout.
SensorPlace placeOf(const Parameters& parameters, int sensor);

/// The pose of a sensor: without a layout the second one is the mirror image of the first one.
Pose makePose(const Parameters& parameters, int sensor);

/// Lines in the frame of a sensor, all parallel to the back face of a wheel.
struct CalibratedLines {
    SensorLine reference; ///< a nominal back face
    SensorLine level; ///< beyond the back faces, before web and tread
    SensorLine low; ///< before the back faces
    SensorLine treadLevel; ///< beyond the tread
    SensorLine treadLow; ///< between flange and tread
};

CalibratedLines calibrate(const Parameters& parameters, int sensor);

} // namespace kxsim
