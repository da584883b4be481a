// The FIR filter that smooths heights.
#pragma once

#include "KxMath/KxPoints.h"

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// The points that a smoothed height depends on: the point itself and those before it.
inline constexpr std::ptrdiff_t kFirTaps = 20;

/// Sets `targets` from the point kFirTaps on: the x of the source, and the weighted sum of its heights, added up from
/// the point itself backwards. Behind a step in x of more than `maxStep` the height is that of the source.
/// @param sources `count` points
/// @param targets `count` points, other ones than `sources`
void smoothHeights(const KxPointXY* sources, std::ptrdiff_t count, float maxStep, KxPointXY* targets,
                   InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
