// The FIR filter that smooths heights.
#pragma once

#include "KxMath/KxPoints.h"

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// So many points the filter looks at: a point itself and those before it.
inline constexpr std::ptrdiff_t kFirTaps = 20;

/// Sets `targets` from the point kFirTaps on: with the x of the source, and with the weighted sum of its heights, added
/// up from the point itself backwards. Where x steps by more than `maxStep`, the height is that of the source.
/// @param sources `count` points
/// @param targets other ones
void smoothHeights(const KxPointXY* sources, std::ptrdiff_t count, float maxStep, KxPointXY* targets,
                   InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
