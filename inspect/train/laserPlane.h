// How the laser plane of a sensor lies in the track.
#pragma once

#include "inspect/train/flangeCircle.h"

#include <KxInspect/Settings.h>

#include <optional>

namespace KxInspect::detail {

/// Turns the directions of a section, square to the reference line and along it, into those of the track.
struct LaserPlane {
    double acrossPerAcross = 1.0;
    double downPerAcross = 0.0;
    double downPerDown = 1.0;
    /// @{ How much farther along the track points of the plane are, for each mm across and down the track.
    double skew = 0.0;
    double shear = 0.0;
    /// @}
    bool isKnown = false; ///< from a pose; otherwise the plane is taken to stand straight across

    SectionPoint inTrack(const SectionPoint& p) const {
        return {acrossPerAcross * p.across, downPerDown * p.down + downPerAcross * p.across};
    }
};

/// The plane of a sensor with its pose; straight across without one, and when the reference line is no trace of a plane
/// along the track as that pose would see it.
LaserPlane laserPlaneOf(const SensorSettings& sensor);

} // namespace KxInspect::detail
