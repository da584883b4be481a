// A parabola through a part of a contour.
#include "inspect/sections/localFit.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr std::size_t kLeastPoints = 5; // of a parabola, of which three determine it

struct Vector {
    double x, y;
};

Vector from(const Point& a, const Point& b) {
    return {static_cast<double>(b.x) - static_cast<double>(a.x), static_cast<double>(b.y) - static_cast<double>(a.y)};
}

double squareOf(const Vector& v) {
    return v.x * v.x + v.y * v.y;
}

/// The biweight kernel: (1 - u^2)^2 for a distance of u times the reach, 0 beyond.
double kernel(double squaredDistance, double reach) {
    const double rest = 1.0 - squaredDistance / (reach * reach);
    return rest > 0.0 ? rest * rest : 0.0;
}

/// The direction of weighted points: the line of total least squares (Pearson, 1901), turned to the last one.
Vector directionOf(const std::vector<Vector>& points, const std::vector<double>& weights) {
    double sum = 0.0, x = 0.0, y = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        sum += weights[i];
        x += weights[i] * points[i].x;
        y += weights[i] * points[i].y;
    }
    x /= sum;
    y /= sum;
    double xx = 0.0, xy = 0.0, yy = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double dx = points[i].x - x;
        const double dy = points[i].y - y;
        xx += weights[i] * dx * dx;
        xy += weights[i] * dx * dy;
        yy += weights[i] * dy * dy;
    }
    const double angle = std::atan2(2.0 * xy, xx - yy) / 2.0;
    const Vector along = {std::cos(angle), std::sin(angle)};
    const Vector span = {points.back().x - points.front().x, points.back().y - points.front().y};
    return along.x * span.x + along.y * span.y < 0.0 ? Vector{-along.x, -along.y} : along;
}

/// The share of each point in the value at 0 of a weighted parabola over a direction; empty when they do not determine it.
std::vector<float> sharesAtOrigin(const std::vector<Vector>& points, const std::vector<double>& weights,
                                  const Vector& along) {
    const auto placeOf = [&](std::size_t i) { return points[i].x * along.x + points[i].y * along.y; };
    std::array<double, 5> s = {};
    for (std::size_t i = 0; i < points.size(); ++i) {
        double term = weights[i];
        for (double& sum : s) {
            sum += term;
            term *= placeOf(i);
        }
    }
    const double a = s[2] * s[4] - s[3] * s[3];
    const double b = s[2] * s[3] - s[1] * s[4];
    const double c = s[1] * s[3] - s[2] * s[2];
    const double determinant = s[0] * a + s[1] * b + s[2] * c;
    if (!(determinant > 1e-9 * s[0] * s[2] * s[4])) { // NaN: true
        return {};
    }
    std::vector<float> shares;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double t = placeOf(i);
        shares.push_back(static_cast<float>(weights[i] * (a + (b + c * t) * t) / determinant));
    }
    return shares;
}

/// Points that follow each other, and the distance within which they are.
struct Range {
    std::size_t first, end;
    double reach;
};

/// The points within a reach, which grows until there are enough of them.
Range pointsNear(const std::vector<Point>& contour, const Point& place, std::size_t near, double reach) {
    constexpr double kGrowth = 1.25;
    constexpr double kMost = 1000.0; // mm
    Range range = {near, near + 1, reach};
    for (;; range.reach *= kGrowth) {
        const auto isNear = [&](std::size_t i) {
            return squareOf(from(place, contour[i])) < range.reach * range.reach;
        };
        while (range.first > 0 && isNear(range.first - 1)) {
            --range.first;
        }
        while (range.end < contour.size() && isNear(range.end)) {
            ++range.end;
        }
        if (range.end - range.first >= kLeastPoints || !(range.reach < kMost)) {
            return range;
        }
    }
}

} // namespace

LocalFit fitNear(const std::vector<Point>& contour, const Point& place, std::size_t near, float reach) {
    const Range range = pointsNear(contour, place, near, static_cast<double>(reach));
    std::vector<Vector> points;
    std::vector<double> weights;
    for (std::size_t i = range.first; i < range.end; ++i) {
        points.push_back(from(place, contour[i]));
        weights.push_back(kernel(squareOf(points.back()), range.reach));
    }
    const Vector along = directionOf(points, weights);
    const Vector normal = {-along.y, along.x};
    LocalFit fit;
    fit.normal = {static_cast<float>(normal.x), static_cast<float>(normal.y)};
    fit.first = range.first;
    fit.shares = sharesAtOrigin(points, weights, along);
    if (fit.shares.empty()) {
        fit.first = near;
        fit.shares = {1.0f};
        return fit;
    }
    double offset = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        offset += static_cast<double>(fit.shares[i]) * (points[i].x * normal.x + points[i].y * normal.y);
    }
    fit.offset = static_cast<float>(offset);
    return fit;
}

} // namespace KxInspect::detail
