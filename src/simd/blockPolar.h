// Polar form of many points at once.
#pragma once

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// So many points at a time are worth the two copies that this takes.
inline constexpr int kPolarPortion = 256;

/// polarRadius() and polarAngleDeg() of up to kPolarPortion points (a, b), in place.
void toPolar(float* as, float* bs, std::ptrdiff_t count, InstructionSet instructions = widestInstructionSet());

/// The points of up to kPolarPortion radii and angles in degrees, in place: cosF() and sinF() times the radius.
void fromPolar(float* radii, float* degrees, std::ptrdiff_t count,
               InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
