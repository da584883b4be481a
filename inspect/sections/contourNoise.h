// The noise of a contour, and how much smoothing it allows.
#pragma once

#include <KxInspect/Profile.h>

#include <vector>

namespace KxInspect::detail {

/// The noise of a contour's points, standard deviations in mm: in x where the contour is steeper than 45 degrees, in y elsewhere.
struct ContourNoise {
    float x = 0.0f;
    float y = 0.0f;

    /// That across a contour with a normal.
    float across(const Point& normal) const;
    /// Whether there is hardly any: less than 0.0005 mm.
    bool isNegligible() const;
    /// Whether there is more than rounding on the flat parts, where wheels and rails touch: that to 0.01 mm alone is 0.003 mm.
    bool isWorthSmoothing() const;
};

/// The noise of a contour: in y that of its flat parts, in x that of its steep ones; that of the others where there
/// are fewer than 20 points. 0 where both are too few. Points closer than 0.05 mm are averaged for it: differences of points that are
/// much closer than their noise show no direction.
ContourNoise noiseOf(const std::vector<Point>& contour);

/// How many points follow each other within `spacing` mm of a contour, at least 1: that many can be averaged.
int groupSize(const std::vector<Point>& contour, double spacing);

/// The means of groups of consecutive points.
std::vector<Point> meansOfGroups(const std::vector<Point>& contour, int size);

/// For each point the length of the contour that can be fitted by one parabola there, from 1.5 to 22 mm: the longest window whose
/// parabola does not contradict those of shorter ones by more than the noise explains (intersection of confidence
/// intervals: A. Goldenshluger, A. Nemirovski, On Spatially Adaptive Estimation of Nonparametric Regression, 1997).
std::vector<float> parabolaWindows(const std::vector<Point>& contour, const ContourNoise& noise);

} // namespace KxInspect::detail
