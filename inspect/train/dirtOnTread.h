// Whether dirt explains what of a tread is off the circle.
#pragma once

#include "inspect/train/treadTable.h"

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// Spots of dirt are at most so thick, mm.
inline constexpr double kThickestDirt = 0.1;

/// Whether dirt explains the radii of a band: so many successive profiles as count are nowhere farther apart than dirt is
/// thick and `leastLimit` more, and a spot of dirt explains them about as well as a flat does. A flat is a chord of the circle:
/// its length decides its depth, and its ends are kinks. Dirt lies on the circle, thickest in the middle of a spot, and by
/// leaning the tread it also misleads the turn of the rings: the radii then tilt along the wheel.
/// @param treadRadius mm
/// @param limit how far off counts, mm
bool isExplainedByDirt(const std::vector<BandRadius>& radii, double treadRadius, double limit, std::size_t successive);

} // namespace KxInspect::detail
