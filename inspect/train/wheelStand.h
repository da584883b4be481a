// How a wheel stands in its recording: its back face over the places of its profiles, and its axle.
#pragma once

#include "inspect/train/axlePlace.h"
#include "inspect/train/axleYaw.h"
#include "inspect/train/backFace.h"
#include "inspect/train/laserPlane.h"

#include <optional>

namespace KxInspect::detail {

struct WheelStand {
    bool hasPlaces = false; ///< places are millimetres; else numbers of records
    BackFace face;
    std::optional<RobustLine> line; ///< the offsets of the back face over the places
    AxlePlace axle;
    double across = 1.0; ///< mm across the track for each mm of an offset: less in a laser plane that is turned
    Askew askew;
    /// @{ The places of the first and the last profile that show the back face, behind the axle.
    double from = 0.0;
    double to = 0.0;
    /// @}
};

/// @param hasPlaces see WheelCollector::hasPlaces()
WheelStand findStand(const FoundWheel& wheel, bool hasPlaces, const KxMath::KxLine& level,
                     const KxMath::KxLine& reference, const LaserPlane& plane);

} // namespace KxInspect::detail
