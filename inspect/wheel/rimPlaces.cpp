// Places on the contour of a rim.
#include "inspect/wheel/rimPlaces.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

// A straight flank beside a fillet of 13 mm, as on S1002 (EN 13715); tips are no smoother once they are worn.
constexpr Surroundings kAtTip = {4.0, 1.0 / 13.0};
constexpr Surroundings kOnFlank = {3.0, 1.0 / 13.0};
constexpr Surroundings kOnTread = {10.0, 1.0 / 100.0};
constexpr Surroundings kForSlope = {10.0, 1.0 / 100.0, 5.0}; // the slope of a shorter piece is that of its roughness
constexpr int kRounds = 6; // of centring a frame at the place that is looked for

/// The point that is closest to a place, among those near another one along the contour.
std::size_t nearestPoint(const RimContour& contour, std::size_t near, const Vector& place) {
    constexpr double kWithin = 15.0; // mm
    const auto distance = [&](std::size_t i) {
        return std::hypot(contour.points[i].x - place.x, contour.points[i].y - place.y);
    };
    std::size_t best = near;
    for (const int step : {-1, 1}) {
        for (std::size_t i = near; i < contour.points.size() && distance(i) <= kWithin;
             i += static_cast<std::size_t>(step)) { // wraps below 0: beyond the end
            best = distance(i) < distance(best) ? i : best;
        }
    }
    return best;
}

/// The direction of a contour around a point: the line of total least squares (Pearson, 1901).
Vector directionAt(const RimContour& contour, std::size_t near) {
    constexpr double kWithin = 2.0; // mm
    std::size_t first = near > 0 ? near - 1 : near;
    std::size_t last = std::min(near + 1, contour.points.size() - 1);
    const auto isNear = [&](std::size_t i) {
        return std::hypot(contour.points[i].x - contour.points[near].x, contour.points[i].y - contour.points[near].y) <=
               kWithin;
    };
    while (first > 0 && isNear(first - 1)) {
        --first;
    }
    while (last + 1 < contour.points.size() && isNear(last + 1)) {
        ++last;
    }
    const double count = static_cast<double>(last - first + 1);
    Vector mean;
    for (std::size_t i = first; i <= last; ++i) {
        mean.x += contour.points[i].x / count;
        mean.y += contour.points[i].y / count;
    }
    double xx = 0.0, xy = 0.0, yy = 0.0;
    for (std::size_t i = first; i <= last; ++i) {
        const double u = contour.points[i].x - mean.x;
        const double v = contour.points[i].y - mean.y;
        xx += u * u;
        xy += u * v;
        yy += v * v;
    }
    const double angle = std::atan2(2.0 * xy, xx - yy) / 2.0;
    const Vector along = {std::cos(angle), std::sin(angle)};
    return along.y < 0.0 ? Vector{-along.x, -along.y} : along; // down the flank
}

/// The place of the least value of a curve that falls to it and rises behind it.
std::optional<double> lowestPlace(const ContourFit& fit) {
    constexpr int kSteps = 60;
    const double end = 0.9 * fit.reach();
    double best = -end;
    for (int i = 1; i <= kSteps; ++i) {
        const double at = end * (2.0 * i / kSteps - 1.0);
        best = fit.valueAt(at) < fit.valueAt(best) ? at : best;
    }
    const double step = 2.0 * end / kSteps;
    double low = best - step;
    double high = best + step;
    if (low < -end || high > end) {
        return {};
    }
    for (int i = 0; i < 50; ++i) {
        const double middle = (low + high) / 2.0;
        (fit.slopeAt(middle) < 0.0 ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

/// How far noise moves the extreme of a curve outwards on the average: the extreme of a parabola with the bend c is s^2 / 2c beyond
/// the place at which noise gives it the slope s.
double biasOfLowest(const ContourFit& fit, double at) {
    const double beside = 0.7 * fit.reach();
    const double bend =
        (fit.valueAt(at - beside) + fit.valueAt(at + beside) - 2.0 * fit.valueAt(at)) / (beside * beside);
    const double slope = fit.slopeEstimateAt(at).deviation();
    const double most = fit.estimateAt(at).deviation();
    return bend > 0.0 && std::isfinite(slope) ? std::min(slope * slope / (2.0 * bend), most) : 0.0;
}

Vector placeOn(const Frame& frame, const ContourFit& fit, double along) {
    const Vector across = frame.across();
    const double value = fit.valueAt(along);
    return {frame.origin.x + along * frame.along.x + value * across.x,
            frame.origin.y + along * frame.along.y + value * across.y};
}

/// The direction of a fitted curve.
Vector tangentAt(const Frame& frame, const ContourFit& fit, double along) {
    const Vector across = frame.across();
    const double slope = fit.slopeAt(along);
    return {frame.along.x + slope * across.x, frame.along.y + slope * across.y};
}

/// Where a fitted curve that goes down reaches a level.
std::optional<double> crossing(const Frame& frame, const ContourFit& fit, double level) {
    constexpr double kAllowed = 1.0; // of the reach: no extrapolation
    double low = -kAllowed * fit.reach();
    double high = -low;
    if (!(placeOn(frame, fit, low).y <= level && level <= placeOn(frame, fit, high).y)) { // NaN: true
        return {};
    }
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2.0;
        (placeOn(frame, fit, middle).y <= level ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

/// The point before the one of several crossings of a level that is in their middle: between the first and the last one it is noise.
std::optional<std::size_t> rawCrossing(const RimContour& contour, std::size_t tip, std::size_t tread, double level) {
    std::vector<std::size_t> crossings;
    for (std::size_t i = tip; i < tread; ++i) {
        if ((contour.points[i].y < level) != (contour.points[i + 1].y < level)) {
            crossings.push_back(i);
        }
    }
    return crossings.empty() ? std::nullopt : std::optional(crossings[crossings.size() / 2]);
}

/// The mean x of points.
std::optional<Estimate> meanX(const RimContour& contour, const std::vector<std::size_t>& points) {
    if (points.size() < 2) {
        return {};
    }
    const double count = static_cast<double>(points.size());
    double mean = 0.0;
    for (const std::size_t i : points) {
        mean += contour.points[i].x / count;
    }
    double squares = 0.0;
    for (const std::size_t i : points) {
        squares += (contour.points[i].x - mean) * (contour.points[i].x - mean);
    }
    const double deviation = std::sqrt(squares / (count - 1.0));
    std::vector<Pull> pulls;
    pulls.reserve(points.size());
    for (const std::size_t i : points) {
        pulls.push_back({i, deviation / count, 0.0});
    }
    return Estimate(mean, std::move(pulls), count - 1.0);
}

} // namespace

std::optional<FlangeTip> findTip(const RimContour& contour) {
    const auto& points = contour.points;
    if (points.size() < 4) {
        return {};
    }
    const auto isLess = [](const Vector& a, const Vector& b) { return a.y < b.y; };
    auto near = static_cast<std::size_t>(std::min_element(points.begin(), points.end(), isLess) - points.begin());
    Frame frame{points[near]};
    std::optional<FlangeTip> found;
    for (int round = 0; round < kRounds; ++round) {
        const std::optional<ContourFit> fit = ContourFit::fit(contour, near, frame, kAtTip);
        if (!fit) {
            break;
        }
        const std::optional<double> at = lowestPlace(*fit);
        if (!at) {
            break;
        }
        found = FlangeTip{near, placeOn(frame, *fit, *at),
                          fit->estimateAt(*at).plus(frame.origin.y + biasOfLowest(*fit, *at))};
        if (std::abs(*at) <= 0.1 * fit->reach()) {
            break;
        }
        frame.origin = found->at;
        near = nearestPoint(contour, near, found->at);
    }
    if (!found && near > 0 && near + 1 < points.size() && !isGap(contour, near - 1) && !isGap(contour, near)) {
        // A corner: the point itself.
        found = FlangeTip{near, points[near], Estimate(points[near].y, {{near, 0.0, contour.noise}}, 1e4)};
    }
    return found;
}

std::optional<TreadPlace> findTread(const RimContour& contour, std::size_t tip, double x) {
    const auto& points = contour.points;
    std::size_t near = tip;
    for (std::size_t i = tip; i < points.size(); ++i) {
        near = std::abs(points[i].x - x) < std::abs(points[near].x - x) ? i : near;
    }
    const Frame frame{{x, points[near].y}};
    const std::optional<ContourFit> fit = ContourFit::fit(contour, near, frame, kOnTread);
    const std::optional<ContourFit> longer = ContourFit::fit(contour, near, frame, kForSlope);
    if (!fit || !longer) {
        return {};
    }
    return TreadPlace{near, fit->estimateAt(0.0).plus(frame.origin.y), longer->slopeEstimateAt(0.0)};
}

std::optional<FlankPlace> findFlank(const RimContour& contour, std::size_t tip, std::size_t tread,
                                    const Estimate& level) {
    const auto& points = contour.points;
    const std::optional<std::size_t> crossed = rawCrossing(contour, tip, tread, level.value());
    if (!crossed) {
        return {};
    }
    std::size_t near = *crossed;
    const Vector &before = points[near], &behind = points[near + 1];
    const double part = (level.value() - before.y) / (behind.y - before.y);
    Frame frame{{before.x + part * (behind.x - before.x), level.value()}, directionAt(contour, near)};
    std::optional<FlankPlace> found;
    for (int round = 0; round < kRounds; ++round) {
        const std::optional<ContourFit> fit = ContourFit::fit(contour, near, frame, kOnFlank);
        const std::optional<double> at = fit ? crossing(frame, *fit, level.value()) : std::nullopt;
        if (!at) {
            break;
        }
        const Vector tangent = tangentAt(frame, *fit, *at);
        const Vector across = frame.across();
        const double run = tangent.x / tangent.y; // of x with the level
        const Vector place = placeOn(frame, *fit, *at);
        const Estimate shift = fit->estimateAt(*at); // across: moves the crossing by across.x, and along the flank
        const Estimate x = Estimate(place.x, {}, 1e4)
                               .plus(shift.plus(-shift.value()), across.x - run * across.y)
                               .plus(level.plus(-level.value()), run);
        found = FlankPlace{place, x};
        if (std::abs(*at) <= 0.05 * fit->reach()) {
            break;
        }
        const double length = std::hypot(tangent.x, tangent.y);
        near = nearestPoint(contour, near, place);
        frame = {place, {tangent.x / length, tangent.y / length}};
    }
    return found;
}

std::optional<Estimate> findBackFace(const RimContour& contour, std::size_t tip) {
    constexpr double kBelowTip = 20.0; // mm; the circle behind the tip of S1002 ends 18.5 mm below it
    constexpr double kLeastHeight = 3.0;
    const double from = contour.points[tip].y + kBelowTip;
    std::vector<std::size_t> points;
    double deepest = from;
    for (std::size_t i = 0; i < tip; ++i) {
        if (contour.points[i].y >= from) {
            points.push_back(i);
            deepest = std::max(deepest, contour.points[i].y);
        }
    }
    return deepest - from >= kLeastHeight ? meanX(contour, points) : std::nullopt;
}

std::optional<Estimate> findOuterFace(const RimContour& contour, std::size_t tread) {
    constexpr double kFromTapeCircle = 40.0; // mm; rims end 60 mm and more from it
    constexpr double kLeastHeight = 3.0;
    constexpr double kShorter = 0.75;
    constexpr double kFarthest = 0.3; // mm, and what noise adds
    const auto& points = contour.points;
    const double from = points[tread].x + kFromTapeCircle;
    double deepest = points[tread].y;
    double highest = deepest;
    for (std::size_t i = tread; i < points.size(); ++i) {
        if (points[i].x >= from) {
            deepest = std::max(deepest, points[i].y);
        }
    }
    std::vector<std::size_t> face;
    for (double height = deepest - highest; height >= kLeastHeight; height *= kShorter) {
        const double used = height * kShorter >= kLeastHeight ? height : kLeastHeight;
        face.clear();
        std::vector<double> levels;
        std::vector<double> places;
        for (std::size_t i = tread; i < points.size(); ++i) {
            if (points[i].x >= from && points[i].y >= deepest - used) {
                face.push_back(i);
                levels.push_back(points[i].y - (deepest - used / 2.0));
                places.push_back(points[i].x);
            }
        }
        const auto upright = LocalPolynomial::fit(levels, places, used / 2.0, 1);
        if (upright && upright->chanceOfMisfit() >= 0.05) {
            break;
        }
    }
    if (face.size() < 5) {
        return {};
    }
    std::vector<double> places;
    places.reserve(face.size());
    for (const std::size_t i : face) {
        places.push_back(points[i].x);
    }
    const double middle = median(places);
    const double allowed = kFarthest + 2.0 * contour.noise;
    const auto isBeside = [&](double x) { return std::abs(x - middle) > allowed; };
    if (std::count_if(places.begin(), places.end(), isBeside) * 10 > static_cast<std::ptrdiff_t>(places.size())) {
        return {};
    }
    return meanX(contour, face);
}

} // namespace KxInspect::detail
