// The points of a profile at equal distances.
#include "inspect/wheel/spacing.h"

#include <cmath>

namespace KxInspect::detail {

namespace {

double distance(const Point& a, const Point& b) {
    return std::hypot(static_cast<double>(b.x) - static_cast<double>(a.x),
                      static_cast<double>(b.y) - static_cast<double>(a.y));
}

/// The point at a part of the way from one point to another.
Point between(const Point& a, const Point& b, double part) {
    const auto mix = [part](float from, float to) {
        return static_cast<float>(static_cast<double>(from) +
                                  (static_cast<double>(to) - static_cast<double>(from)) * part);
    };
    return {mix(a.x, b.x), mix(a.y, b.y)};
}

} // namespace

bool spaceEvenly(std::vector<Point>& points, double spacing) {
    constexpr double kMostPoints = 1e6;
    double length = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        length += distance(points[i - 1], points[i]);
    }
    if (!(length / spacing < kMostPoints)) {
        return false;
    }
    if (points.size() < 2) {
        return true;
    }
    std::vector<Point> spaced = {points.front()};
    double next = spacing; // along the line from points[i - 1]
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double step = distance(points[i - 1], points[i]);
        while (next < step) {
            spaced.push_back(between(points[i - 1], points[i], next / step));
            next += spacing;
        }
        next -= step;
    }
    spaced.push_back(points.back());
    points = std::move(spaced);
    return true;
}

} // namespace KxInspect::detail
