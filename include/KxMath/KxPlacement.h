// The placement codes of sensors.
#pragma once

namespace KxMath {

/// What the placement code of a sensor, `position` of its record of coordinates, says about its calibration.
///
/// | code      | mirrored | turned | finds y |
/// | --------- | -------- | ------ | ------- |
/// | 2, 5      |          | yes    | yes     |
/// | 3         | yes      |        |         |
/// | 4         | yes      | yes    | yes     |
/// | any other |          |        |         |
struct KxPlacement {
    bool isMirrored; ///< x of the profile runs downwards: the calibration object is seen in the order of -x
    bool isTurned; ///< beta is turned by 180 degrees
    bool findsY; ///< the calibration finds y; for the others y stays the caller's

    explicit constexpr KxPlacement(int code)
        : isMirrored(code == 3 || code == 4), isTurned(code == 2 || code == 4 || code == 5), findsY(isTurned) {}
};

} // namespace KxMath
