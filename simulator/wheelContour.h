// The cross-section of a wheel.
#pragma once

#include <vector>

namespace kxsim {

/// A point of a cross-section: the distance from the plane of the back face, towards the field side, and from the axle.
struct ContourPoint {
    double axial;
    double radius;
};

using Contour = std::vector<ContourPoint>;

/// Axial position of the tape circle, at which the diameter is measured.
inline constexpr double kTapeCircle = 70.0; // mm
inline constexpr double kRimWidth = 135.0; // mm

struct WheelShape {
    double diameter; ///< at the tape circle, as it is now
    double rimInnerRadius; ///< where the flat of the back face ends and the web begins; wear leaves it alone
    double flangeWear = 0.0; ///< how much thinner the flange is than a new one
    double treadWear =
        0.0; ///< how much lower the tape circle is than the rest of the tread: the flange is as much higher
};

/// The height above the tape circle (positive away from the axle) of the rolling contour S1002 of EN 13715 with a
/// flange of 28 mm by 32.5 mm and a rim of 135 mm.
/// @param y from -70 (back face) to 65 (field side), 0 being the tape circle
double s1002Height(double y);

/// The whole contour from the web on the back side over back face, flange and tread to the web on the field side.
/// Chords stay within 0.002 mm of the curves.
Contour makeWheelContour(const WheelShape& shape);

/// Flange thickness 10 mm above the tape circle (measure Sd), from the back face; NaN when the contour has none.
double flangeThickness(const Contour& contour, double diameter);

} // namespace kxsim
