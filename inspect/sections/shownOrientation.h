// The orientation of a cross-section, found from its shape.
#pragma once

#include <KxInspect/CrossSection.h>

#include <vector>

namespace KxInspect::detail {

/// What the shape of a section shows.
struct ShownOrientation {
    bool isRecognised = false; ///< false: no wheel or rail in any orientation
    Orientation orientation = {}; ///< a part that the shape does not show is empty
    bool isEven = false; ///< of a rail: the same from both sides, so that mirroring changes little
};

/// The orientation in which a contour without NaN is a wheel: with a flange near its smallest x.
ShownOrientation shownByWheel(const std::vector<Point>& contour);

/// The orientation in which a contour without NaN is a rail. A head is convex; its gauge side is the one that reaches down
/// to the gauge depth. Where both do or none does, it is the lower side of the head, where both sides are seen: rails are
/// inclined inwards, and wear there.
ShownOrientation shownByRail(const std::vector<Point>& contour, float gaugeDepth);

} // namespace KxInspect::detail
