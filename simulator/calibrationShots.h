// Profiles of the calibration object as files, and a file with the truth.
#pragma once

#include "simulator/calibrationProfile.h"

#include <QtCore/QString>

#include <cstdint>

namespace kxsim {

/// Profiles that a sensor takes of the calibration object, one after the other from the same pose.
struct CalibrationShots {
    int placement = 2;
    int profiles = 1; ///< for each place of the object
    std::uint64_t seed = 1;
    CalibrationObject object = KxInspect::calibrationObjectFor(2);
    CalibrationSensor sensor;
    // The difference of the pose from the nominal one.
    double alpha = 0.0; ///< degrees, as the two below
    double beta = 0.0;
    double gamma = 0.0;
    Vec3 offset; ///< mm
    std::vector<Vec3> moves =
        {}; ///< how far the object is moved from its place, one place after the other; none: once there
};

/// Writes calibration-1.bin and so on, one profile record each, and truth.json into the directory, which is created
/// if missing. The truth is written last. Throws a KxInspect::Error when one of them cannot be written.
void writeCalibrationShots(const CalibrationShots& shots, const QString& directory);

} // namespace kxsim
