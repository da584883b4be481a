// Wheel profiles as input of the rim measurement.
#include "inspect/wheel/rimSection.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

void appendRimSection(const std::vector<Point>& profile, Rim& rim) {
    // The measurement turns the rim until its first point, seen from the centre, is on +x. This changes nothing when
    // all points are there. It then reads the rim from the largest x inwards.
    constexpr float kFromCenter = 1.0f;
    const auto isFinite = [](const Point& p) { return std::isfinite(p.x) && std::isfinite(p.y); };
    float outermost = 0.0f;
    for (const Point& p : profile) {
        if (isFinite(p)) {
            outermost = std::max(outermost, p.x);
        }
    }
    for (const Point& p : profile) {
        if (isFinite(p)) {
            rim.points.append({outermost + kFromCenter - p.x, -p.y, 0.0f});
        }
    }
}

std::vector<Point> sectionOf(const Rim& rim) {
    float outermost = -std::numeric_limits<float>::infinity();
    float lowest = std::numeric_limits<float>::infinity();
    for (const KxMath::KxPointXYZ& p : rim.points) {
        outermost = std::max(outermost, p.x);
        lowest = std::min(lowest, p.y);
    }
    std::vector<Point> section;
    for (const KxMath::KxPointXYZ& p : rim.points) {
        section.push_back({outermost - p.x, p.y - lowest});
    }
    return section;
}

} // namespace KxInspect::detail
