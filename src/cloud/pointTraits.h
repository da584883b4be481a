// What differs between the point types.
#pragma once

#include "simd/float4.h"

namespace KxMath::detail {

template <typename Point>
inline constexpr bool kHasZ = requires(Point p) {
    p.z;
};

/// Three coordinates in one vector; the fourth lane has no meaning.
using Coordinates = Float4;

} // namespace KxMath::detail
