// Trigonometric functions of many numbers at once.
#pragma once

#include "simd/instructionSets.h"

#include <cstddef>

namespace KxMath::detail {

/// Calculates atanF() of `count` numbers.
void atanOf(const float* values, std::ptrdiff_t count, float* results,
            InstructionSet instructions = widestInstructionSet());

/// Calculates sinF() and cosF() of `count` angles.
void sinesAndCosinesOf(const float* radians, std::ptrdiff_t count, float* sines, float* cosines,
                       InstructionSet instructions = widestInstructionSet());

} // namespace KxMath::detail
