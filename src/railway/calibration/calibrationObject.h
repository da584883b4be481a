// The calibration object: roof ridges along X.
#pragma once

namespace KxMath::detail {

/// The object as the arguments of the calibration describe it. Straight crests lie at Z = -P, 0 and P and half of one
/// before them; an oblique one lies at Z = 2.5 P + t X and half of one behind it. The flanks fall by m per mm of
/// Z from a crest. All crests lie in one plane of constant Y. For the placements 3 and 4 this holds for -Z.
struct CalibrationObject {
    double twoPitches; ///< p1 = 2 P, from the first to the third crest
    double depth; ///< p2 = m P / 2, of the valleys between the straight crests
    double obliqueness; ///< p3 = t
    double crestY; ///< p4
    double obliqueSlopeFactor = 1.0; ///< slope of the oblique ridge along Z over that of the others

    /// True when there is such an object.
    bool isValid() const;

    double pitch() const { return twoPitches / 2.0; }
    double obliqueCrestZ() const { return 1.25 * twoPitches; } ///< at X = 0
    /// Depth behind the plane of the crests, on a flank of the ridge whose crest is at Z = -P, 0, P (0 to 2) or of the
    /// oblique one (3). Negative where the crest has been passed.
    /// @param isBehind the flank at the larger Z
    double depthAt(int ridge, bool isBehind, double x, double z) const;
};

} // namespace KxMath::detail
