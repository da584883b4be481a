// Places on a contour, from curves fitted to the points around them.
#include "inspect/wheel/contourFit.h"

#include "inspect/fitting/median.h"
#include "inspect/fitting/noise.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kMisfit = 0.05; // chance below which a curve does not follow the points

double distance(const Vector& a, const Vector& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

/// The points around a place, in their order: without a break, so that the other side of the flange stays out.
std::vector<std::size_t> pointsWithin(const RimContour& contour, std::size_t near, const Frame& frame, double reach) {
    const double farthest = 1.5 * reach; // noise moves points in and out of the reach
    const auto isNear = [&](std::size_t i) { return distance(contour.points[i], frame.origin) <= farthest; };
    std::size_t first = near;
    while (first > 0 && isNear(first - 1)) {
        --first;
    }
    std::vector<std::size_t> found;
    for (std::size_t i = first; i < contour.points.size() && (i <= near || isNear(i)); ++i) {
        if (std::abs(frame.alongOf(contour.points[i])) <= reach) {
            found.push_back(i);
        }
    }
    return found;
}

/// The neighbours of the origin along a contour; empty when it does not pass the origin near a point.
std::optional<std::size_t> firstOfNeighbours(const RimContour& contour, std::size_t near, const Frame& frame) {
    constexpr std::size_t kFarthest = 100; // noise shuffles neighbours
    for (std::size_t step = 0; step <= kFarthest; ++step) {
        for (const std::size_t i : {near + step, near - step}) { // wraps below 0: beyond the end
            if (i < contour.points.size() - 1 &&
                (frame.alongOf(contour.points[i]) <= 0.0) != (frame.alongOf(contour.points[i + 1]) <= 0.0)) {
                return i;
            }
        }
    }
    return {};
}

/// The reach r of a quartic on points d apart with noise s: its value has the standard deviation 1.875 s sqrt(d / 2r), and where
/// the curvature changes by c at the worst place, it is off by 0.0041 c r^2 (both from the least squares of a quartic on evenly
/// spaced points).
double reachAt(const RimContour& contour, const Surroundings& surroundings) {
    constexpr double kDeviation = 1.875;
    constexpr double kOff = 0.0041;
    constexpr double kAllowed = 0.2; // of the standard deviation
    const double reach = std::pow(
        kAllowed * kDeviation * contour.noise * std::sqrt(contour.spacing / 2.0) / (kOff * surroundings.bendStep), 0.4);
    return std::isfinite(reach) ? std::clamp(reach, surroundings.least, surroundings.reach) : surroundings.reach;
}

/// How much a contour bends at a point, by the parabola through it and its neighbours; 0 at the ends.
double bendAt(const RimContour& contour, std::size_t i, const Frame& frame) {
    if (i == 0 || i + 1 >= contour.points.size()) {
        return 0.0;
    }
    const auto place = [&](std::size_t k) {
        return Vector{frame.alongOf(contour.points[k]), frame.acrossOf(contour.points[k])};
    };
    const Vector a = place(i - 1), b = place(i), c = place(i + 1);
    const double bend = 2.0 * ((c.y - b.y) / (c.x - b.x) - (b.y - a.y) / (b.x - a.x)) / (c.x - a.x);
    return std::isfinite(bend) ? std::abs(bend) : 0.0;
}

} // namespace

RimContour::RimContour(const std::vector<Point>& contour) : noise(static_cast<double>(noiseAcross(contour))) {
    std::vector<double> steps;
    for (const Point& p : contour) {
        points.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
        if (points.size() > 1) {
            steps.push_back(distance(points[points.size() - 2], points.back()));
        }
    }
    spacing = median(std::move(steps), 0.0);
}

bool isGap(const RimContour& contour, std::size_t first) {
    constexpr double kLeast = 3.0;
    constexpr double kTimes = 10.0;
    return distance(contour.points[first], contour.points[first + 1]) > std::max(kLeast, kTimes * contour.spacing);
}

std::optional<ContourFit> ContourFit::fit(const RimContour& contour, std::size_t near, const Frame& frame,
                                          const Surroundings& surroundings) {
    constexpr double kShorter = 0.75;
    constexpr std::size_t kTerms = 5; // of a quartic
    constexpr std::size_t kFewTerms = 3;
    const std::optional<std::size_t> first = firstOfNeighbours(contour, near, frame);
    if (!first || isGap(contour, *first)) {
        return {};
    }
    ContourFit result;
    result.frame_ = frame;
    result.deviation_ = contour.noise;
    for (double tried = reachAt(contour, surroundings);; tried *= kShorter) {
        const std::vector<std::size_t> points = pointsWithin(contour, near, frame, tried);
        std::vector<double> along;
        std::vector<double> across;
        for (const std::size_t i : points) {
            along.push_back(frame.alongOf(contour.points[i]));
            across.push_back(frame.acrossOf(contour.points[i]));
        }
        auto curve = LocalPolynomial::fit(along, across, tried, kTerms);
        if (!curve) {
            curve = LocalPolynomial::fit(along, across, tried, kFewTerms);
        }
        if (!curve) {
            break;
        }
        result.deviation_ = std::sqrt(curve->variance());
        result.freedom_ = curve->freedom();
        if (curve->chanceOfMisfit() >= kMisfit || tried * kShorter < surroundings.least) {
            result.reach_ = tried;
            result.points_ = points;
            result.curve_ = std::move(curve);
            return result;
        }
    }
    result.points_ = {*first, *first + 1};
    for (const auto& [end, i] : {std::pair{&result.first_, *first}, {&result.second_, *first + 1}}) {
        *end = {frame.alongOf(contour.points[i]), frame.acrossOf(contour.points[i])};
    }
    result.reach_ = std::max(std::abs(result.first_.x), std::abs(result.second_.x));
    result.bend_ = std::max(bendAt(contour, *first, frame), bendAt(contour, *first + 1, frame));
    result.beyond_ = contour.points.size() + *first;
    return result;
}

double ContourFit::valueAt(double along) const {
    return curve_ ? curve_->valueAt(along) : first_.y + slopeAt(along) * (along - first_.x);
}

double ContourFit::slopeAt(double along) const {
    return curve_ ? curve_->slopeAt(along) : (second_.y - first_.y) / (second_.x - first_.x);
}

Estimate ContourFit::estimateAt(double along) const {
    if (curve_) {
        return estimate(curve_->valueAt(along), curve_->sharesOfValue(along));
    }
    const double part = (along - first_.x) / (second_.x - first_.x);
    const Vector across = frame_.across();
    const Estimate sag(0.0, {{beyond_, sagAt(along) * across.x, sagAt(along) * across.y}}, 1e4);
    return estimate(valueAt(along), {1.0 - part, part}).plus(sag);
}

/// How far the contour may be off the straight line between two points.
double ContourFit::sagAt(double along) const {
    return bend_ / 2.0 * std::max(0.0, (along - first_.x) * (second_.x - along));
}

Estimate ContourFit::slopeEstimateAt(double along) const {
    if (curve_) {
        return estimate(curve_->slopeAt(along), curve_->sharesOfSlope(along));
    }
    const double length = second_.x - first_.x;
    return estimate(slopeAt(along), {-1.0 / length, 1.0 / length});
}

Estimate ContourFit::estimate(double value, const std::vector<double>& shares) const {
    const Vector across = frame_.across();
    std::vector<Pull> pulls;
    for (std::size_t k = 0; k < shares.size(); ++k) {
        const double pull = shares[k] * deviation_;
        pulls.push_back({points_[k], pull * across.x, pull * across.y});
    }
    return {value, std::move(pulls), freedom_};
}

} // namespace KxInspect::detail
