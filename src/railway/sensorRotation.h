// How a sensor is turned in the track frame.
#pragma once

#include <cmath>

namespace KxMath::detail {

/// The directions of a profile's x (u) and y (v) in the track frame, from the angles of the sensor in radians.
struct SensorRotation {
    double uX, uY, uZ;
    double vX, vY, vZ;

    SensorRotation(double alpha, double beta, double gamma) {
        const double sinA = std::sin(alpha);
        const double cosA = std::cos(alpha);
        const double sinB = std::sin(beta);
        const double cosB = std::cos(beta);
        const double sinC = std::sin(gamma);
        const double cosC = std::cos(gamma);
        uX = sinA * cosB * cosC + sinB * sinC;
        uY = sinA * sinB * cosC - sinC * cosB;
        uZ = cosA * cosC;
        vX = cosA * cosB;
        vY = cosA * sinB;
        vZ = -sinA;
    }
};

} // namespace KxMath::detail
