// The contour of a rail's head.
#include "simulator/railHead.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace kxsim {

namespace {

using KxInspect::Point;

/// y points down.
Point pointOf(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

} // namespace

std::vector<Point> railHeadContour(const RailHead& head, double step) {
    constexpr double kSide = 30.0; // mm
    const double sideAngle = std::numbers::pi / 2.0 - std::atan(1.0 / 20.0);
    std::vector<Point> half = {pointOf(0.0, 0.0)};
    double x = 0.0, y = 0.0, angle = 0.0;
    for (const auto& [radius, end] : head.arcs) {
        while (x < end && angle < sideAngle) {
            angle += step / radius;
            x += step * std::cos(angle);
            y += step * std::sin(angle);
            half.push_back(pointOf(x, y));
        }
    }
    for (double down = 0.0; down < kSide; down += step) {
        half.push_back(pointOf(x + down / 20.0, y + down));
    }
    std::vector<Point> rail;
    const double tilt = std::atan(head.inclination);
    const auto add = [&](double px, double py) {
        const double worn = py + head.crownWear * std::exp(-std::pow((px + 2.0) / 14.0, 2));
        // Inclined towards the track, which is on the side of negative x.
        rail.push_back(
            pointOf(px * std::cos(tilt) + worn * std::sin(tilt), worn * std::cos(tilt) - px * std::sin(tilt)));
    };
    for (std::size_t i = half.size(); i-- > 1;) {
        add(-static_cast<double>(half[i].x), static_cast<double>(half[i].y));
    }
    for (const Point& p : half) {
        add(static_cast<double>(p.x), static_cast<double>(p.y));
    }
    return rail;
}

} // namespace kxsim
