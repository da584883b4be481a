// Trigonometric functions of many numbers at once.
#pragma once

#include <cstddef>

namespace KxMath::detail {

/// Calculates atanF() of `count` numbers.
void atanOf(const float* values, std::ptrdiff_t count, float* results);

/// Calculates sinF() and cosF() of `count` angles.
void sinesAndCosinesOf(const float* radians, std::ptrdiff_t count, float* sines, float* cosines);

} // namespace KxMath::detail
