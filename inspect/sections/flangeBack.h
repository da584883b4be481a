// Where the flange back of a wheel's contour is.
#pragma once

#include <KxInspect/Profile.h>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// The place of a flange back.
struct FlangeBack {
    float x = 0.0f;
    bool isSeen = false; ///< the contour begins on a steep back there; otherwise `x` is the origin of its coordinates
};

/// Finds the flange back of a contour without NaN, from the back to the field side, y down and x outwards. Gauges count x
/// from the flange back or from the tape circle, 70 mm outside: where the back that the contour shows is within 0.5 mm of such
/// a place, or where it shows none and the flange tip is where it belongs, that place is taken. Another steep back is taken as
/// it is. Empty when nothing tells where the back is.
std::optional<FlangeBack> findFlangeBack(const std::vector<Point>& wheel);

/// Whether findFlangeBack() takes the steep back that the contour shows, and not the origin of its coordinates.
bool isBackMeasured(const std::vector<Point>& wheel);

/// How far a line is off the upright.
struct Lean {
    double slope = 0.0; ///< radians, small
    double error = 0.0; ///< its standard error
};

/// How the flat back face leans in a contour as for findFlangeBack(). Empty where less than 5 mm of it are seen.
std::optional<Lean> leanOfBack(const std::vector<Point>& wheel);

/// Makes a contour begin at a flange back: what is before it is cut; a contour that begins later gets a first point there
/// at the height of its own one.
void beginAtFlangeBack(std::vector<Point>& wheel, float x);

/// The thickness of the flange 10 mm above the tape circle (measure Sd) of a running surface that begins at the flange back, mm;
/// NaN when it does not reach the tape circle.
float flangeThickness(const std::vector<Point>& surface);

} // namespace KxInspect::detail
