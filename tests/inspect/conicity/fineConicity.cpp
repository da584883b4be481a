// The equivalent conicity by a fine search of the contacts on the contours themselves.
#include "inspect/conicity/fineConicity.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace conicity_test {

namespace {

using KxInspect::Point;

constexpr double kStep = 0.01; // mm
constexpr int kReach = 1200; // displacements to each side
constexpr double kTapeCircle = 70.0;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

/// The side of a contour that can touch, at multiples of the step: the largest y of all segments with sign 1, the
/// smallest with -1.
struct Surface {
    long first = 0; ///< index of the first value: x / step
    std::vector<double> y = {};

    double at(long i) const {
        return i < first || i - first >= static_cast<long>(y.size()) ? kNone : y[static_cast<std::size_t>(i - first)];
    }
};

long below(double x) {
    return static_cast<long>(std::floor(x / kStep));
}

Surface surfaceOf(const std::vector<Point>& contour, double from, double sign) {
    const auto [low, high] =
        std::minmax_element(contour.begin(), contour.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
    Surface surface;
    surface.first = below(std::max(static_cast<double>(low->x), from)) + 1;
    surface.y.assign(static_cast<std::size_t>(below(static_cast<double>(high->x)) - surface.first + 1), kNone);
    for (std::size_t k = 1; k < contour.size(); ++k) {
        const Point& a = contour[k - 1].x < contour[k].x ? contour[k - 1] : contour[k];
        const Point& b = contour[k - 1].x < contour[k].x ? contour[k] : contour[k - 1];
        const double x1 = static_cast<double>(a.x), x2 = static_cast<double>(b.x);
        const double y1 = static_cast<double>(a.y), y2 = static_cast<double>(b.y);
        for (long i = std::max(below(x1) + 1, surface.first); i <= below(x2); ++i) {
            const double y = y1 + (y2 - y1) * (static_cast<double>(i) * kStep - x1) / (x2 - x1);
            double& best = surface.y[static_cast<std::size_t>(i - surface.first)];
            best = std::isnan(best) ? y : sign * std::max(sign * best, sign * y);
        }
    }
    return surface;
}

/// The smallest x of a rail from its top to `depth` below it.
double gaugePoint(const std::vector<Point>& rail, double depth) {
    double top = std::numeric_limits<double>::infinity();
    double first = top;
    for (const Point& p : rail) {
        top = std::min(top, static_cast<double>(p.y));
    }
    for (std::size_t k = 0; k < rail.size(); ++k) {
        const double y = static_cast<double>(rail[k].y) - top - depth;
        if (depth == 0.0 || y <= 0.0) {
            first = std::min(first, static_cast<double>(rail[k].x));
        }
        const double before = k == 0 ? y : static_cast<double>(rail[k - 1].y) - top - depth;
        if (depth > 0.0 && before * y < 0.0) {
            const double x = static_cast<double>(rail[k - 1].x);
            first = std::min(first, x + (static_cast<double>(rail[k].x) - x) * before / (before - y));
        }
    }
    return first;
}

/// A wheel over its rail.
class Side {
public:
    Side(const std::vector<Point>& wheel, const std::vector<Point>& rail, const FineWheelSet& set, double radius)
        : wheel_(surfaceOf(wheel, -1e9, 1.0)) {
        const double edge = gaugePoint(rail, set.gaugeDepth);
        rail_ = surfaceOf(rail, edge, -1.0);
        double back = std::numeric_limits<double>::infinity();
        for (const Point& p : wheel) {
            back = std::min(back, static_cast<double>(p.x));
        }
        offset_ = std::lround((back - edge + (set.gauge - set.backToBack) / 2.0) / kStep);
        level_ = wheel_.at(std::lround((back + kTapeCircle) / kStep)) - radius;
    }

    /// The rolling radius when the wheel has moved outwards by `steps`; NaN when the rail leaves it.
    double radius(int steps) const {
        double smallest = std::numeric_limits<double>::infinity();
        double y = kNone;
        for (std::size_t k = 0; k < rail_.y.size(); ++k) {
            const double wheel = wheel_.at(rail_.first + static_cast<long>(k) + offset_ - steps);
            if (rail_.y[k] - wheel < smallest) { // NaN: false
                smallest = rail_.y[k] - wheel;
                y = wheel;
            }
        }
        return y - level_;
    }

private:
    Surface wheel_;
    Surface rail_ = {};
    long offset_ = 0;
    double level_ = 0.0;
};

/// The integral of 1 / sqrt(F(a) - F(u)) between two displacements, whose ends are singular: u = c + a sin(t).
double halfWave(const std::vector<double>& potential, double left, double right, double level) {
    constexpr int kParts = 4000;
    double sum = 0.0;
    for (int i = 0; i < kParts; ++i) {
        const double t = ((i + 0.5) / kParts - 0.5) * std::numbers::pi;
        const double u = (left + right) / 2.0 + (right - left) / 2.0 * std::sin(t);
        const auto k = static_cast<std::size_t>(u);
        const double value = potential[k] + (potential[k + 1] - potential[k]) * (u - static_cast<double>(k));
        sum += std::cos(t) / std::sqrt(std::max(level - value, 1e-12));
    }
    return sum * std::numbers::pi / kParts * (right - left) / 2.0 * kStep;
}

/// Where the potential first reaches a level, from the centre on; it does.
double turn(const std::vector<double>& potential, std::size_t centre, int direction, double level) {
    auto k = static_cast<long>(centre);
    const auto at = [&](long i) { return potential[static_cast<std::size_t>(i)]; };
    do {
        k += direction;
    } while (at(k) < level);
    return static_cast<double>(k) - direction * (at(k) - level) / (at(k) - at(k - direction));
}

} // namespace

std::optional<double> fineConicity(const FineWheelSet& set, double amplitude) {
    const Side first(set.wheel1, set.rail1, set, set.radius1);
    const Side second(set.wheel2, set.rail2, set, set.radius2);
    std::vector<double> difference;
    for (int i = -kReach; i <= kReach; ++i) {
        difference.push_back(second.radius(i) - first.radius(-i));
    }
    // The stable centre nearest to 0.
    std::optional<std::size_t> centre;
    for (std::size_t k = 1; k < difference.size(); ++k) {
        const auto distance = [](std::size_t i) { return std::abs(static_cast<long>(i) - kReach); };
        if (difference[k - 1] < 0.0 && difference[k] >= 0.0 && (!centre || distance(k) < distance(*centre))) {
            centre = k;
        }
    }
    if (!centre) {
        return {};
    }
    std::vector<double> potential(difference.size(), 0.0);
    for (std::size_t k = *centre + 1; k < difference.size(); ++k) {
        potential[k] = potential[k - 1] + (difference[k] + difference[k - 1]) / 2.0 * kStep;
    }
    for (std::size_t k = *centre; k-- > 0;) {
        potential[k] = potential[k + 1] - (difference[k] + difference[k + 1]) / 2.0 * kStep;
    }
    double low = 0.0;
    double high = std::min(*std::max_element(potential.begin(), potential.begin() + static_cast<long>(*centre)),
                           *std::max_element(potential.begin() + static_cast<long>(*centre), potential.end()));
    const auto amplitudeOf = [&](double level) {
        return (turn(potential, *centre, 1, level) - turn(potential, *centre, -1, level)) * kStep / 2.0;
    };
    if (!(amplitudeOf(high) >= amplitude)) {
        return {};
    }
    for (int i = 0; i < 40; ++i) {
        const double middle = (low + high) / 2.0;
        (amplitudeOf(middle) < amplitude ? low : high) = middle;
    }
    const double time =
        halfWave(potential, turn(potential, *centre, -1, high), turn(potential, *centre, 1, high), high);
    return std::numbers::pi * std::numbers::pi / (time * time);
}

} // namespace conicity_test
