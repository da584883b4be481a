// The distance across a wheel pair at one place along the track, the yaw of its axle, and how well both are known.
#pragma once

#include "inspect/train/wheelStand.h"

#include <KxInspect/PassResult.h>

#include <array>
#include <optional>

namespace KxInspect::detail {

/// One wheel of a pair.
struct PairSide {
    const WheelStand* stand; ///< null where the sensor did not see the wheel
    int sensor; ///< number of the sensor, 1 or 2
};

/// Sets the yaw of a pair with its interval, or why it has none.
void measureYaw(const std::array<PairSide, 2>& sides, WheelPair& pair);

/// Sets the distance of a pair, its place along the track and its interval, after its yaw.
/// @param baseUncertainty half of the 95 % interval of the base distance; absent: not known
/// @return false when a wheel has no line through its back face
bool measureDistance(const std::array<PairSide, 2>& sides, double baseDistance, std::optional<float> baseUncertainty,
                     WheelPair& pair);

} // namespace KxInspect::detail
