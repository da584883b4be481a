// The object that a sensor's pose is calibrated with, and what a sensor sees of it.
#pragma once

#include "simulator/pose.h"
#include "simulator/random.h"

#include <KxMath/KxProfile.h>

#include <vector>

namespace kxsim {

/// Roof ridges along X, in front of which a sensor looks along +Y or -Y. Straight crests lie at Z = -P, 0 and P (and
/// half of one at -2 P), oblique ones at 2.5 P + t X (and half of one at 4 P + t X); for the placements 3 and 4 this
/// holds for -Z. From a crest the flanks fall away from the sensor by `slope` per mm of Z. The object is long enough in
/// X for the laser line not to leave it.
struct CalibrationObject {
    double pitch = 24.0; ///< P
    double slope = 1.2;
    double obliqueness = 0.25; ///< t
    double crestY = 500.0; ///< of the plane of the crests

    // The arguments of the calibration.
    double p1() const { return 2.0 * pitch; }
    double p2() const { return slope * pitch / 2.0; }
    double p3() const { return obliqueness; }
    double p4() const { return crestY; }
};

/// The object as it is turned to be seen by a sensor of a placement: turned with the sensor, so that t changes its
/// sign.
CalibrationObject objectForPlacement(int placement);

/// The pose of a sensor about which the calibration works well: alpha 0, beta 45 and gamma 27 degrees, alpha and gamma
/// mirrored for the placements 3 and 4, beta turned by 180 degrees for 2, 4 and 5; 250 mm from the middle of the
/// object.
Pose nominalCalibrationPose(int placement, const CalibrationObject& object);

struct CalibrationSensor {
    int points = 1280;
    double fan = 60.0; ///< angle of the laser fan, degrees
    double range = 450.0; ///< largest distance that is measured
    double noise = 0.02; ///< standard deviation of py, mm
};

/// Appends the profile that a sensor takes of the object. Rays that miss it, or hit it beyond the range, give no point.
/// @param hits receives where the points were measured in the track frame, without noise; may be null
/// @return true when all ridges lie in view: all flanks from the valley before the first straight crest to the valley
///         behind the oblique one are seen over four fifths of their width or more
bool takeCalibrationProfile(const CalibrationObject& object, int placement, const Pose& pose,
                            const CalibrationSensor& sensor, Random& random, KxMath::KxProfile& profile,
                            std::vector<Vec3>* hits = nullptr);

} // namespace kxsim
