// Where along the pass the axle of a wheel is over the laser.
#pragma once

#include "inspect/train/axleYaw.h"

#include <KxMath/KxPrimitives.h>

#include <vector>

namespace KxInspect::detail {

/// The place of an axle along the pass.
struct AxlePlace {
    double place = 0.0;
    double error = 0.0; ///< standard error
    bool isSeen = false; ///< by the flange; else the middle of the profiles of the wheel is taken for it
};

/// Finds the place where a ring on the back of the flange, 4 mm behind the face, is lowest: the vertex of the arc that it
/// describes over the profiles, which needs no unit of the places. Where too few profiles show the ring, it is the middle
/// of the profiles, which the camera may see from one side: an eighth of their range is its standard error.
/// @param places of the profiles along the pass, in parallel, ascending; not empty
/// @param face the offsets of the back face over the places
AxlePlace findAxle(const std::vector<PointList>& profiles, const std::vector<double>& places,
                   const KxMath::KxLine& reference, const std::optional<RobustLine>& face);

} // namespace KxInspect::detail
