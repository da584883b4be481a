// What a measured rim does not show, and what its measurement left out.
#pragma once

#include <KxInspect/Wheel.h>

#include <array>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// How many of kWheelMeasures, from the first one on, come from the smooth profile of METRO_calcWheelParameters().
inline constexpr std::size_t kSmoothMeasures = 4;

/// Why each of these was not found in the smooth profile, in the order of kWheelMeasures; empty for those that were.
std::array<std::string, kWheelMeasures.size()> reasonsOf(const WheelMeasures& measures,
                                                         const std::vector<Point>& measured);

/// A warning when the measurement leaves out points of the flank: up to 20 mm from the first point it takes what lies
/// nearer to the axle than that point for the back of the flange, wherever the tip is. Empty otherwise.
/// @param section the points in the coordinates of the measured profile
std::string droppedFlank(const std::vector<Point>& section);

} // namespace KxInspect::detail
