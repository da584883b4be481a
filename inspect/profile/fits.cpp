// Lines, circles and polynomials through the points of one profile, in double precision about their middle.
#include "inspect/profile/fits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace KxInspect::detail {

namespace {

struct Middle {
    double x = 0.0;
    double y = 0.0;
};

Middle middleOf(const std::vector<Point>& points) {
    Middle sum;
    for (const Point& p : points) {
        sum.x += static_cast<double>(p.x);
        sum.y += static_cast<double>(p.y);
    }
    const auto count = static_cast<double>(points.size());
    return {sum.x / count, sum.y / count};
}

double halfWidth(const std::vector<Point>& points, double middle) {
    double width = 0.0;
    for (const Point& p : points) {
        width = std::max(width, std::abs(static_cast<double>(p.x) - middle));
    }
    return width;
}

/// Of floats as large as the largest y.
double roundingOf(const std::vector<Point>& points) {
    double largest = 0.0;
    for (const Point& p : points) {
        largest = std::max(largest, std::abs(static_cast<double>(p.y)));
    }
    return largest * static_cast<double>(std::numeric_limits<float>::epsilon());
}

double squared(double value) {
    return value * value;
}

/// Sums of products of the coordinates about their middle; s is the squared distance from it.
struct Moments {
    double xx = 0.0, xy = 0.0, yy = 0.0, xs = 0.0, ys = 0.0, s = 0.0;
};

Moments momentsOf(const std::vector<Point>& points, const Middle& middle) {
    Moments m;
    for (const Point& p : points) {
        const double x = static_cast<double>(p.x) - middle.x;
        const double y = static_cast<double>(p.y) - middle.y;
        const double s = x * x + y * y;
        m.xx += x * x;
        m.xy += x * y;
        m.yy += y * y;
        m.xs += x * s;
        m.ys += y * s;
        m.s += s;
    }
    return m;
}

} // namespace

std::vector<Point> knownPoints(const KxMath::KxProfile& profile) {
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(profile.points.size()));
    for (const KxMath::KxPointXY& p : profile.points) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            points.push_back({p.x, p.y});
        }
    }
    return points;
}

std::size_t differentX(const std::vector<Point>& points) {
    std::set<float> places;
    for (const Point& p : points) {
        places.insert(p.x);
    }
    return places.size();
}

double rmsBetween(const std::vector<Point>& points, const std::vector<Point>& others) {
    const std::size_t count = std::min(points.size(), others.size());
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        sum += squared(static_cast<double>(points[i].y) - static_cast<double>(others[i].y));
    }
    return std::sqrt(sum / static_cast<double>(count));
}

std::optional<LineFit> fitLine(const std::vector<Point>& points) {
    if (differentX(points) < 2) {
        return {};
    }
    const Middle middle = middleOf(points);
    const Moments m = momentsOf(points, middle);
    LineFit line{m.xy / m.xx, 0.0, 0.0, roundingOf(points)};
    line.intercept = middle.y - line.slope * middle.x;
    for (const Point& p : points) {
        const double height = middle.y + line.slope * (static_cast<double>(p.x) - middle.x);
        line.rms += squared(static_cast<double>(p.y) - height);
    }
    line.rms = std::sqrt(line.rms / static_cast<double>(points.size()));
    return line;
}

CircleFit aboutCircle(const std::vector<Point>& points, double x, double y, double radius) {
    constexpr double kDegrees = 180.0 / 3.14159265358979323846;
    constexpr double kTurn = 360.0;
    CircleFit circle{x, y, radius, 0.0, 0.0, 0.0};
    std::vector<double> angles;
    for (const Point& p : points) {
        const double dx = static_cast<double>(p.x) - x;
        const double dy = static_cast<double>(p.y) - y;
        circle.rms += squared(std::hypot(dx, dy) - radius);
        angles.push_back(std::atan2(dy, dx) * kDegrees);
    }
    circle.rms = std::sqrt(circle.rms / static_cast<double>(points.size()));
    std::sort(angles.begin(), angles.end());
    double gap = angles.front() + kTurn - angles.back();
    circle.from = angles.front();
    for (std::size_t i = 1; i < angles.size(); ++i) {
        if (angles[i] - angles[i - 1] > gap) {
            gap = angles[i] - angles[i - 1];
            circle.from = angles[i];
        }
    }
    circle.arc = kTurn - gap;
    return circle;
}

std::optional<CircleFit> fitCircle(const std::vector<Point>& points) {
    constexpr double kLevel = 1e-13; // of the determinant of points on one line, by rounding
    if (points.size() < 3) {
        return {};
    }
    const Middle middle = middleOf(points);
    const Moments m = momentsOf(points, middle);
    const double determinant = m.xx * m.yy - m.xy * m.xy;
    if (!(determinant > kLevel * squared(m.xx + m.yy))) {
        return {};
    }
    const double x = (m.xs * m.yy - m.ys * m.xy) / (2.0 * determinant);
    const double y = (m.ys * m.xx - m.xs * m.xy) / (2.0 * determinant);
    const double radius = std::sqrt(x * x + y * y + m.s / static_cast<double>(points.size()));
    return aboutCircle(points, middle.x + x, middle.y + y, radius);
}

double PolynomialFit::at(double x) const {
    double value = 0.0;
    for (auto c = coefficients.rbegin(); c != coefficients.rend(); ++c) {
        value = value * (x - middle) + *c;
    }
    return value;
}

std::optional<PolynomialFit> fitPolynomial(const std::vector<Point>& points, int degree) {
    const auto terms = static_cast<std::size_t>(degree) + 1;
    if (points.empty() || differentX(points) < terms) {
        return {};
    }
    PolynomialFit fit{middleOf(points).x, std::vector<double>(terms), 0.0, roundingOf(points)};
    const double width = std::max(halfWidth(points, fit.middle), std::numeric_limits<double>::min());
    KxMath::KxProfile scaled; // x from -1 to 1
    scaled.points.reserve(static_cast<qsizetype>(points.size()));
    for (const Point& p : points) {
        scaled.points.append(
            KxMath::KxPointXY(static_cast<float>((static_cast<double>(p.x) - fit.middle) / width), p.y));
    }
    if (!scaled.calcPolynomCoeffs(degree, fit.coefficients.data())) {
        return {};
    }
    double power = 1.0;
    for (double& coefficient : fit.coefficients) {
        coefficient /= power;
        power *= width;
    }
    for (const Point& p : points) {
        fit.rms += squared(static_cast<double>(p.y) - fit.at(static_cast<double>(p.x)));
    }
    fit.rms = std::sqrt(fit.rms / static_cast<double>(points.size()));
    const auto line = fitLine(points);
    constexpr double kRounding = 1.001;
    const bool isWorse = line && degree > 0 && !(fit.rms <= kRounding * line->rms + line->rounding); // NaN: true
    return isWorse ? std::nullopt : std::optional(fit);
}

} // namespace KxInspect::detail
