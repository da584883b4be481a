// Position and orientation of a sensor.
#pragma once

#include "simulator/vector.h"

namespace kxsim {

/// The pose of a sensor: a profile point (px, py) is at origin + px * u + py * v in the track frame, px running along
/// the laser line and py being the distance from the sensor. The angles are in degrees and have the meaning of a sensor
/// coordinate record.
struct Pose {
    Vec3 origin;
    double alpha = 0.0;
    double beta = 0.0;
    double gamma = 0.0;

    Vec3 u() const;
    Vec3 v() const;
    Vec3 toTrack(double px, double py) const { return origin + px * u() + py * v(); }
    /// The pose of the sensor that is the mirror image on the other side of the track.
    Pose mirrored() const;
};

/// A line y = k x + b in the frame of a sensor.
struct SensorLine {
    double k;
    double b;

    double at(double x) const { return k * x + b; }
};

/// What a sensor sees of the plane Y = `y`.
SensorLine traceOfPlane(const Pose& pose, double y);

} // namespace kxsim
