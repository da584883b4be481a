// The surface of the calibration object, in its own frame.
#include "inspect/calibrate/objectSurface.h"

namespace KxInspect::detail {

std::optional<std::size_t> flankAt(const CalibrationObject& object, double x, double z, double part) {
    const auto ridges = ridgesOf(object);
    for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
        const std::size_t ridge = flank / 2 + 1; // after the half ridge
        const bool isBehind = flank % 2 == 1;
        const double crest = ridges[ridge].crestAt(x);
        const double valley = (crest + ridges[isBehind ? ridge + 1 : ridge - 1].crestAt(x)) / 2.0;
        const double from = isBehind ? crest : valley;
        const double to = isBehind ? valley : crest;
        const double margin = part * (to - from);
        if (z >= from + margin && z <= to - margin) {
            return flank;
        }
    }
    return std::nullopt;
}

FlankPlane planeOf(const CalibrationObject& object, std::size_t flank, double obliqueFactor) {
    const CalibrationRidge ridge = ridgesOf(object)[flank / 2 + 1]; // after the half ridge
    const double side = flank % 2 == 1 ? 1.0 : -1.0;
    const double slope = side * object.slope * (flank / 2 == kObliqueRidge ? obliqueFactor : 1.0);
    return {slope * ridge.obliqueness, -slope, slope * ridge.crest};
}

} // namespace KxInspect::detail
