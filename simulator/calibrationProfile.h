// What a sensor sees of the calibration object.
#pragma once

#include "simulator/pose.h"
#include "simulator/random.h"

#include <KxInspect/CalibrationObject.h>
#include <KxMath/KxProfile.h>

#include <vector>

namespace kxsim {

using KxInspect::CalibrationObject;

/// The pose of a sensor about which the calibration works well: alpha 0, beta 45 and gamma 27 degrees, alpha and gamma
/// mirrored for mirrored placements, beta turned by 180 degrees for turned ones; 250 mm from the middle of the
/// object.
Pose nominalCalibrationPose(int placement, const CalibrationObject& object);

/// The nominal pose turned by angles in degrees about the sensor (mirrored for mirrored placements) and then moved.
Pose offsetPose(const Pose& nominal, int placement, double alpha, double beta, double gamma, const Vec3& offset);

struct CalibrationSensor {
    int points = 1280;
    double fan = 60.0; ///< angle of the laser fan, degrees
    double range = 450.0; ///< largest distance that is measured
    double noise = 0.02; ///< standard deviation of py, mm
    double spikes = 0.0; ///< probability that a point is an outlier
    double spikeSize = 8.0; ///< largest distance of an outlier along py, mm; the smallest one is 0.3 of it
};

/// Appends the profile that a sensor takes of the object. Rays that miss it, or hit it beyond the range, give no point.
/// @param hits receives the points in the track frame, without noise; may be null
/// @return true when all ridges are in view: all flanks from the valley before the first straight crest to the valley
///         behind the oblique one are seen over four fifths of their width or more
bool takeCalibrationProfile(const CalibrationObject& object, int placement, const Pose& pose,
                            const CalibrationSensor& sensor, Random& random, KxMath::KxProfile& profile,
                            std::vector<Vec3>* hits = nullptr);

} // namespace kxsim
