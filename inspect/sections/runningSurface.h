// Extents of cross-sections, y down.
#pragma once

#include <KxInspect/CrossSection.h>

#include <vector>

namespace KxInspect::detail {

/// From the first to the last point of a section, mm; 0 for none.
inline float widthOf(const std::vector<Point>& points) {
    return points.empty() ? 0.0f : points.back().x - points.front().x;
}

/// Whether a point stands above another one: its y, which points down, is smaller.
inline bool isHigher(const Point& a, const Point& b) {
    return a.y < b.y;
}

} // namespace KxInspect::detail
