// Extents of cross-sections, y down.
#pragma once

#include <KxInspect/CrossSection.h>

#include <vector>

namespace KxInspect::detail {

/// The distance in x from the first to the last point of a section, mm; 0 without points.
inline float widthOf(const std::vector<Point>& points) {
    return points.empty() ? 0.0f : points.back().x - points.front().x;
}

/// Whether a point is above another one; y points down.
inline bool isHigher(const Point& a, const Point& b) {
    return a.y < b.y;
}

/// Whether a point is inside another one; x points outwards.
inline bool isLeft(const Point& a, const Point& b) {
    return a.x < b.x;
}

/// The part of a contour from a place on, with points at the place where it comes in or goes out.
std::vector<Point> partFrom(const std::vector<Point>& contour, float x, SectionKind kind);

/// The gauge point of a rail: the smallest x of its contour from the top to `depth` below it; with a depth of 0 that of all points.
/// NaN without points.
float gaugePointOf(const std::vector<Point>& rail, float depth);

/// The number of points that are further than `tolerance` behind a running surface, mm.
int countHidden(const std::vector<Point>& points, const std::vector<Point>& surface, SectionKind kind, float tolerance);

} // namespace KxInspect::detail
