// Worn rims and their true measures.
#pragma once

#include "simulator/random.h"
#include "simulator/wheelContour.h"

#include <optional>
#include <vector>

namespace kxsim {

/// Wear of the contour S1002.
struct RimWear {
    double flange = 0.0; ///< mm by which the front of the flange is worn off
    double tread = 0.0; ///< mm by which the tread is worn off where that is most
    double treadAt = kTapeCircle; ///< where that is, from the back face
    double treadWidth = 20.0; ///< mm from there to where 1/e of it is left
};

/// A random one: flanges down to 26 mm, treads up to 4 mm hollow.
RimWear randomWear(Random& random);

/// The contour of a worn rim from 30 mm below the tape circle on the back to as deep on the outer face, with points 0.01 mm apart.
/// Radii count from the tape circle of the new wheel.
Contour makeRimContour(const RimWear& wear);

/// The measures of a contour, each from its definition on the line through the points, mm.
struct RimTruth {
    double height; ///< Sh
    double thickness; ///< Sd
    double flangeSlope; ///< qR
    double hollow;
    double treadSlope;
    double width; ///< of the rim
    double thicknessAt18; ///< 18 mm below the tip
    double flankWidth; ///< from 2 mm below the tip to 13 mm above the tape circle
};

/// The rim of a whole wheel: from the back face to the outer one, radii from the tape circle.
Contour rimOf(const Contour& wheel, double diameter);

/// @param slopeBase the length over which the slope of the tread is taken, mm
RimTruth trueMeasures(const Contour& contour, double slopeBase = 0.2);

/// How a contour is measured.
struct RimSampling {
    double spacing = 0.2; ///< of the points, mm
    double noise = 0.05; ///< its standard deviation, mm
    bool isAlongX = false; ///< the points are evenly spaced across the wheel and have noise in their height alone, as
        ///< those of a sensor above the tread; otherwise along the contour, with noise in x and y
};

/// Points on a contour with noise; the first one at a random place.
Contour sampled(const Contour& contour, const RimSampling& sampling, Random& random);

} // namespace kxsim
