// The cross-section of a wheel, merged from what its sensors see.
#pragma once

#include "inspect/wheelset/turnedWheel.h"

#include <KxInspect/Profile.h>

#include <vector>

namespace KxInspect::detail {

/// A cross-section in the coordinates of a wheel: x from where the flange back is expected, y from `highest` towards the axle.
struct WheelSection {
    std::vector<Point> points; ///< along the contour, from the back of the flange to the outer face
    double highest = 0.0; ///< the radius at y = 0, mm
    double face = 0.0; ///< across, at x = 0
    /// By how much what a sensor sees lies farther outwards than what the first one sees, as far as both see the same, mm;
    /// NaN where they do not.
    std::vector<double> apart;
};

/// Merges what the sensors of one side see. Where several see the same, their radii are made equal: at the mean by the
/// weights, since each has found its own axle.
/// @param wheels each of them found; not empty
/// @param weights of their radii
WheelSection mergedSection(const std::vector<const TurnedWheel*>& wheels, const std::vector<double>& weights,
                           double face);

} // namespace KxInspect::detail
