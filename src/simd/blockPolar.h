// Polar form of a block of points.
#pragma once

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// Block size; large enough to pay for the copies of the coordinates, small enough for the first-level cache.
inline constexpr int kPolarBlock = 256;

/// polarRadius() and polarAngleDeg() of up to kPolarBlock points (a, b), in place.
void toPolar(float* as, float* bs, std::ptrdiff_t count, InstructionSet instructions = widestInstructionSet());

/// The points of up to kPolarBlock radii and angles in degrees, in place: cosF() and sinF() times the radius.
void fromPolar(float* radii, float* degrees, std::ptrdiff_t count,
               InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
