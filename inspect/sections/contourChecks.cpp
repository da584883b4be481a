// What is doubtful about the points of a contour.
#include "inspect/sections/contourChecks.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace KxInspect::detail {

namespace {

double distance(const Point& a, const Point& b) {
    return std::hypot(static_cast<double>(b.x) - static_cast<double>(a.x),
                      static_cast<double>(b.y) - static_cast<double>(a.y));
}

constexpr std::size_t kSide = 4; // points on each side of the one that is judged

/// A straight line: its middle and its direction, of the length 1.
struct Line {
    double x, y, dx, dy;

    /// The distance of a point, positive on the left.
    double offset(const Point& p) const {
        return dx * (static_cast<double>(p.y) - y) - dy * (static_cast<double>(p.x) - x);
    }
};

/// The line of total least squares through points from `first` on, in their direction (Pearson, 1901).
Line lineThrough(const Point* first) {
    double x = 0.0, y = 0.0, xx = 0.0, xy = 0.0, yy = 0.0;
    for (std::size_t i = 0; i < kSide; ++i) {
        x += static_cast<double>(first[i].x) / kSide;
        y += static_cast<double>(first[i].y) / kSide;
    }
    for (std::size_t i = 0; i < kSide; ++i) {
        const double u = static_cast<double>(first[i].x) - x;
        const double v = static_cast<double>(first[i].y) - y;
        xx += u * u;
        xy += u * v;
        yy += v * v;
    }
    const double angle = std::atan2(2.0 * xy, xx - yy) / 2.0;
    const double dx = std::cos(angle);
    const double dy = std::sin(angle);
    const double along = dx * (static_cast<double>(first[kSide - 1].x) - static_cast<double>(first[0].x)) +
                         dy * (static_cast<double>(first[kSide - 1].y) - static_cast<double>(first[0].y));
    return along < 0.0 ? Line{x, y, -dx, -dy} : Line{x, y, dx, dy};
}

/// How far a point lies off the line before it and off the line behind it: the smaller distance, 0 where the
/// signs differ.
double offsetOf(const std::vector<Point>& contour, std::size_t i) {
    const double before = lineThrough(&contour[i - kSide]).offset(contour[i]);
    const double behind = lineThrough(&contour[i + 1]).offset(contour[i]);
    return before * behind > 0.0 ? std::min(std::abs(before), std::abs(behind)) : 0.0;
}

} // namespace

std::optional<Gap> largestGap(const std::vector<Point>& contour) {
    constexpr double kLeast = 3.0;
    constexpr double kTimes = 10.0;
    std::vector<double> distances;
    for (std::size_t i = 1; i < contour.size(); ++i) {
        distances.push_back(distance(contour[i - 1], contour[i]));
    }
    const auto widest = std::max_element(distances.begin(), distances.end());
    if (widest == distances.end() || !(*widest > std::max(kLeast, kTimes * median(distances)))) {
        return {};
    }
    const auto i = static_cast<std::size_t>(widest - distances.begin());
    const Point &a = contour[i], &b = contour[i + 1];
    return Gap{{(a.x + b.x) / 2.0f, (a.y + b.y) / 2.0f}, static_cast<float>(*widest)};
}

Outliers dropOutliers(std::vector<Point>& contour) {
    constexpr double kLeast = 0.25;
    constexpr double kTimes = 10.0;
    Outliers found;
    if (contour.size() < 4 * kSide) {
        return found;
    }
    std::vector<double> offsets(contour.size(), 0.0);
    for (std::size_t i = kSide; i + kSide < contour.size(); ++i) {
        offsets[i] = offsetOf(contour, i);
    }
    std::vector<double> usual;
    std::copy_if(offsets.begin(), offsets.end(), std::back_inserter(usual), [](double value) { return value > 0.0; });
    const double limit = std::max(kLeast, kTimes * median(usual, 0.0));
    std::vector<Point> kept;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        const bool isPeak =
            i > 0 && i + 1 < contour.size() && offsets[i] > offsets[i - 1] && offsets[i] >= offsets[i + 1];
        if (!(isPeak && offsets[i] > limit)) {
            kept.push_back(contour[i]);
            continue;
        }
        ++found.count;
        if (static_cast<float>(offsets[i]) > found.distance) {
            found.distance = static_cast<float>(offsets[i]);
            found.farthest = contour[i];
        }
    }
    contour = std::move(kept);
    return found;
}

} // namespace KxInspect::detail
