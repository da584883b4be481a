// Profiles of the calibration object as files, with the truth beside them.
#pragma once

#include "simulator/calibrationProfile.h"

#include <QtCore/QString>

#include <cstdint>

namespace kxsim {

/// Profiles that a sensor takes of the calibration object, one after the other from the same pose.
struct CalibrationShots {
    int placement = 2;
    int profiles = 1;
    std::uint64_t seed = 1;
    CalibrationObject object = KxInspect::calibrationObjectFor(2);
    CalibrationSensor sensor;
    // How the pose differs from the nominal one.
    double alpha = 0.0; ///< degrees, as the two below
    double beta = 0.0;
    double gamma = 0.0;
    Vec3 offset; ///< mm
};

/// Writes calibration-1.bin and so on, one profile record each, and truth.json into the directory, which is made where
/// it is missing. The truth is written last.
/// @return what went wrong, empty when all is written
QString writeCalibrationShots(const CalibrationShots& shots, const QString& directory);

} // namespace kxsim
