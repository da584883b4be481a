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

} // namespace KxInspect::detail
