// What differs between the point types, and boxes over them.
#pragma once

#include "numeric/bounds.h"

namespace KxMath::detail {

template <typename Point>
inline constexpr bool kHasZ = requires(Point p) {
    p.z;
};

/// A box with inclusive bounds. A NaN bound is switched off; a NaN coordinate fails every bound that is not.
struct Box {
    float minX, maxX;
    float minY, maxY;
    float minZ, maxZ;

    template <typename Point>
    bool contains(const Point& p) const {
        return isInside(p.x, minX, maxX) && isInside(p.y, minY, maxY) && isInside(p.z, minZ, maxZ);
    }
};

} // namespace KxMath::detail
