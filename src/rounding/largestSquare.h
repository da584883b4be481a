// Comparing distances by their squares.
#pragma once

#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxMath::detail {

/// The largest float whose square root, rounded to float, is at most `root`; NaN where there is none.
inline float largestSquare(float root) {
    if (!(root >= 0.0f)) {
        return kNaN;
    }
    if (std::isinf(root)) {
        return root;
    }
    constexpr float kLargest = std::numeric_limits<float>::max();
    float square = std::min(root * root, kLargest);
    while (std::sqrt(square) > root) {
        square = std::nextafter(square, 0.0f);
    }
    while (square < kLargest && std::sqrt(std::nextafter(square, kLargest)) <= root) {
        square = std::nextafter(square, kLargest);
    }
    return square;
}

} // namespace KxMath::detail
