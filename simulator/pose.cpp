// Position and orientation of a sensor.
#include "simulator/pose.h"

#include <cmath>
#include <numbers>

namespace kxsim {

namespace {

/// Sine and cosine of an angle in degrees, exact at multiples of 90 degrees, so that a laser plane straight across the
/// track holds no part of X.
struct Turn {
    double sine;
    double cosine;

    explicit Turn(double degrees) {
        const double quarters = degrees / 90.0;
        if (quarters == std::round(quarters)) {
            constexpr double kSines[] = {0.0, 1.0, 0.0, -1.0};
            const int quarter = static_cast<int>(std::fmod(std::fmod(quarters, 4.0) + 4.0, 4.0));
            sine = kSines[quarter];
            cosine = kSines[(quarter + 1) % 4];
        } else {
            const double radians = degrees * std::numbers::pi / 180.0;
            sine = std::sin(radians);
            cosine = std::cos(radians);
        }
    }
};

} // namespace

Vec3 Pose::u() const {
    const Turn a(alpha);
    const Turn b(beta);
    const Turn c(gamma);
    return {a.sine * b.cosine * c.cosine + b.sine * c.sine, a.sine * b.sine * c.cosine - c.sine * b.cosine,
            a.cosine * c.cosine};
}

Vec3 Pose::v() const {
    const Turn a(alpha);
    const Turn b(beta);
    return {a.cosine * b.cosine, a.cosine * b.sine, -a.sine};
}

Pose Pose::mirrored() const {
    return {{origin.x, -origin.y, origin.z}, alpha, -beta, -gamma};
}

SensorLine traceOfPlane(const Pose& pose, double y) {
    const double along = pose.u().y;
    const double away = pose.v().y;
    return {-along / away, (y - pose.origin.y) / away};
}

} // namespace kxsim
