// Polar form as the header defines it, point by point with the functions of the standard library.
#pragma once

#include <cmath>

namespace kxbench {

constexpr double kPi = 3.1415927410125732; // the single-precision number

/// The angle of (a, b) in degrees, from 0 to 360.
inline float angleOf(float a, float b) {
    if (a == 0.0f) {
        return b > 0.0f ? 90.0f : b < 0.0f ? 270.0f : 0.0f;
    }
    const double degrees = static_cast<double>(static_cast<float>(std::atan(static_cast<double>(b / a)))) * 180.0 / kPi;
    return static_cast<float>(a < 0.0f ? 180.0 + degrees : b < 0.0f ? degrees + 360.0 : degrees);
}

/// Turns coordinates into radius and angle.
inline void toPolar(float& a, float& b) {
    const float angle = angleOf(a, b);
    a = std::sqrt(b * b + a * a);
    b = angle;
}

/// Turns radius and angle into coordinates.
inline void fromPolar(float& radius, float& angle) {
    const double rad = static_cast<double>(static_cast<float>(static_cast<double>(angle) * kPi / 180.0));
    angle = static_cast<float>(std::sin(rad)) * radius;
    radius = static_cast<float>(std::cos(rad)) * radius;
}

} // namespace kxbench
