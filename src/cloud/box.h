// Boxes in space.
#pragma once

#include "cloud/pointTraits.h"

namespace KxMath::detail {

/// A box with inclusive bounds. A NaN bound is switched off; a NaN coordinate fails every bound that is not.
class Box {
public:
    Box(float minX, float maxX, float minY, float maxY, float minZ, float maxZ)
        : lower_{minX, minY, minZ, 0.0f}, upper_{maxX, maxY, maxZ, 0.0f}, isLowerOff_(lower_ != lower_),
          isUpperOff_(upper_ != upper_) {}

    /// Without branches: whether a point is inside is unpredictable for the branch predictor.
    template <typename Point>
    bool contains(const Point& p) const {
        const Coordinates v = {p.x, p.y, p.z, 0.0f};
        const Mask4 inside = ((v >= lower_) | isLowerOff_) & ((v <= upper_) | isUpperOff_);
        return allOf(inside);
    }

private:
    Coordinates lower_;
    Coordinates upper_;
    Mask4 isLowerOff_;
    Mask4 isUpperOff_;
};

} // namespace KxMath::detail
