// The calibration object of a sensor, and the placement codes.
#pragma once

#include "Export.h"

#include <array>
#include <cstddef>

namespace KxInspect {

/// The meaning of the placement code of a sensor.
struct Placement {
    bool isMirrored = false; ///< the object is seen in the order of -x, with alpha and gamma mirrored: codes 3 and 4
    bool isTurned = false; ///< beta is turned by 180 degrees: codes 2, 4 and 5
    bool findsY = false; ///< the calibration finds y; otherwise the caller gives it
};

/// The meaning of a placement code. Every number is a code; codes other than 2 to 5 have no special meaning.
KXINSPECT_EXPORT Placement placementOf(int code);

/// On which side of the crests a sensor stands: at smaller Y it looks along +Y, at larger Y along -Y.
enum class SensorSide { SmallerY, LargerY };

/// Where the oblique crest of the object is, seen from the side: above the straight ones (larger Z) or below them.
enum class ObliqueCrest { Above, Below };

/// Roof ridges along X, seen by a sensor along +Y or -Y. Straight crests are at Z = -P, 0 and P (and half of one
/// at -2 P), an oblique one at 2.5 P + t X (and half of one at 4 P + t X); for mirrored placements this holds for -Z.
/// From a crest the flanks fall away from the sensor by `slope` per mm of Z. Lengths in mm.
struct CalibrationObject {
    double pitch = 24.0; ///< P, the distance of the straight crests
    double slope = 1.2; ///< mm of depth per mm of Z
    double obliqueness = 0.25; ///< t in the track frame: an object turned by 180 degrees about Z has -t
    double crestY = 0.0; ///< Y of the plane of the crests

    /// @{ The object as METRO_calcAnglesCoord() takes it.
    double p1() const { return 2.0 * pitch; }
    double p2() const { return slope * pitch / 2.0; }
    double p3() const { return obliqueness; }
    double p4() const { return crestY; }
    /// @}
};

/// Standard uncertainties of the measures of an object (type B of JCGM 100:2008; half of an expanded uncertainty with k =
/// 2), from its certificate.
struct ObjectError {
    double pitch = 0.0; ///< mm
    double slope = 0.0;
    double obliqueness = 0.0;

    bool isSet() const { return pitch != 0.0 || slope != 0.0 || obliqueness != 0.0; }
};

/// A measure of the object with its name in JSON.
struct CalibrationObjectField {
    const char* name;
    double CalibrationObject::*value;
};

inline constexpr std::array<CalibrationObjectField, 4> kCalibrationObjectFields = {
    {{"pitch", &CalibrationObject::pitch},
     {"slope", &CalibrationObject::slope},
     {"oblique", &CalibrationObject::obliqueness},
     {"planeY", &CalibrationObject::crestY}}};

/// The object of the default measures, turned with the sensor: t is negative for turned placements.
KXINSPECT_EXPORT CalibrationObject calibrationObjectFor(int placement, double crestY = 0.0);

/// The object of the default measures as it faces a sensor on that side, for every placement: t is above 0 for a sensor
/// at smaller Y, below 0 for one at larger Y.
KXINSPECT_EXPORT CalibrationObject calibrationObjectFacing(SensorSide side, double crestY = 0.0);

/// A ridge of the object: its crest is at Z = crest + obliqueness X.
struct CalibrationRidge {
    double crest = 0.0; ///< mm
    double obliqueness = 0.0; ///< 0 for a straight ridge

    double crestAt(double x) const { return crest + obliqueness * x; }
};

/// With the half ridges at both ends.
inline constexpr std::size_t kRidgeCount = 6;

/// The ridges in the order of Z (of -Z for mirrored placements). The valley between two crests is in the middle. Of
/// the first ridge only the flank behind the crest exists, of the last one only that before it.
KXINSPECT_EXPORT std::array<CalibrationRidge, kRidgeCount> ridgesOf(const CalibrationObject& object);

} // namespace KxInspect
