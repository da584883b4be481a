// Angles between degrees, radians and coordinates, rounded the same way everywhere.
#pragma once

#include <cmath>

namespace KxMath::detail {

/// Pi as all angle conversions of the library take it: the 32-bit float nearest to it, 3.1415927410125732.
inline constexpr float kPiF = 3.14159274101257324219f;
inline constexpr double kPi = static_cast<double>(kPiF);

/// Radians of an angle in degrees, calculated in double precision and rounded once.
inline float toRadians(float deg) {
    return static_cast<float>(static_cast<double>(deg) * kPi / 180.0);
}

inline double toDegrees(float rad) {
    return static_cast<double>(rad) * 180.0 / kPi;
}

/// The arc tangent rounded to a float. In double precision first, so that the result does not depend on how well a
/// platform rounds its single-precision function.
inline float atanF(float v) {
    return static_cast<float>(std::atan(static_cast<double>(v)));
}

inline float cosF(float rad) {
    return static_cast<float>(std::cos(static_cast<double>(rad)));
}

inline float sinF(float rad) {
    return static_cast<float>(std::sin(static_cast<double>(rad)));
}

/// The polar angle of (a, b) in degrees, 0 to 360, the quotient and its arc tangent each rounded to a float.
/// A NaN a gives 0; a NaN b gives 0 except with a < 0, where the angle is NaN.
/// @param angle toDegrees(atanF(b / a))
inline float polarAngleDeg(float a, float b, double angle) {
    if (a < 0.0f) {
        return static_cast<float>(180.0 + angle);
    }
    if (a > 0.0f) {
        // NaN: 0
        return b >= 0.0f ? static_cast<float>(angle) : b < 0.0f ? static_cast<float>(angle + 360.0) : 0.0f;
    }
    if (a == 0.0f) {
        return b > 0.0f ? 90.0f : b < 0.0f ? 270.0f : 0.0f;
    }
    return 0.0f; // NaN
}

inline float polarAngleDeg(float a, float b) {
    return polarAngleDeg(a, b, toDegrees(atanF(b / a)));
}

/// The distance of (a, b) from the origin, the sum of squares rounded before the root.
inline float polarRadius(float a, float b) {
    const float sum = b * b + a * a;
    return std::sqrt(sum);
}

} // namespace KxMath::detail
