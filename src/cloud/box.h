// Boxes in space.
#pragma once

#include "cloud/pointTraits.h"

namespace KxMath::detail {

/// A box with inclusive bounds. A NaN bound is switched off; a NaN coordinate fails every bound that is not.
class Box {
public:
    Box(float minX, float maxX, float minY, float maxY, float minZ, float maxZ)
        : lower_{minX, minY, minZ, 0.0f}, upper_{maxX, maxY, maxZ, 0.0f}, hasNoLower_(lower_ != lower_),
          hasNoUpper_(upper_ != upper_) {}

    /// Without branches: whether a point is inside is unpredictable for the branch predictor.
    template <typename Point>
    bool contains(const Point& p) const {
        const Coordinates v = {p.x, p.y, p.z, 0.0f};
        const Answers4 inside = ((v >= lower_) | hasNoLower_) & ((v <= upper_) | hasNoUpper_);
        return allOf(inside);
    }

private:
    Coordinates lower_;
    Coordinates upper_;
    Answers4 hasNoLower_;
    Answers4 hasNoUpper_;
};

} // namespace KxMath::detail
