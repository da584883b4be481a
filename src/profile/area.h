// The area under a profile.
#pragma once

#include "KxMath/KxPoints.h"

#include <cmath>

namespace KxMath::detail {

/// The signed area between the chord from `a` to `b` and y = 0. The width counts as positive whatever the order in x.
inline float trapezoid(const KxPointXY& a, const KxPointXY& b) {
    return (a.y + b.y) * std::abs(b.x - a.x) * 0.5f;
}

} // namespace KxMath::detail
