// The surface of the calibration object, in its own frame: crests at Y = 0, Y away from the sensor.
#pragma once

#include <KxInspect/Calibration.h>

#include <cstddef>
#include <optional>

namespace KxInspect::detail {

/// The part of the width of a flank at crest and valley that is not looked at.
inline constexpr double kFlankMargin = 0.04;

/// The flank at a place, off crests and valleys by a part of its width; empty outside the eight flanks.
std::optional<std::size_t> flankAt(const CalibrationObject& object, double x, double z, double margin = kFlankMargin);

/// The plane of a flank: the distance of (X, Y, Z) from it along Y, positive behind, is Y + onX X + onZ Z + offset.
struct FlankPlane {
    double onX;
    double onZ;
    double offset;

    double distance(double x, double y, double z) const { return y + onX * x + onZ * z + offset; }
};

/// @param obliqueFactor slope of the oblique ridge along Z over that of the others
FlankPlane planeOf(const CalibrationObject& object, std::size_t flank, double obliqueFactor);

inline constexpr std::size_t kObliqueRidge = 3; ///< among the ridges with two flanks

} // namespace KxInspect::detail
