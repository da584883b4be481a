// A parabola through a part of a contour.
#pragma once

#include <KxInspect/Profile.h>

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// A weighted parabola over the tangent of a contour near a place (W. S. Cleveland, Robust Locally Weighted Regression and
/// Smoothing Scatterplots, 1979, without the robust part). It is linear in the points: each has its share in the value at the
/// place.
struct LocalFit {
    Point normal = {}; ///< across the contour, of the length 1
    float offset = 0.0f; ///< from the place to the parabola, along the normal
    std::size_t first = 0; ///< the first of the points that were fitted
    std::vector<float> shares = {}; ///< of the points from `first` on, their sum is 1
};

/// Fits the points that follow each other within `reach` of a place, or within more where these are fewer than 5, with the
/// biweight kernel. Where the points determine no parabola, the place itself stays, with `near` as its only share.
/// @param near the index of the point at the place, or of the last one before it
LocalFit fitNear(const std::vector<Point>& contour, const Point& place, std::size_t near, float reach);

} // namespace KxInspect::detail
