// The hollow that wear leaves in a tread.
#include "inspect/wheel/treadHollow.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr Surroundings kOnTread = {12.0, 1.0 / 100.0}; // hollows are some 30 mm wide and more
constexpr double kStep = 1.0;
constexpr double kFirst = 25.0; // inside of the tape circle, behind the fillet of the flange
constexpr double kLeastOutside = 20.0; // of the tape circle that has to be seen
constexpr double kMostOutside = 100.0; // no rim is wider

/// A place on the tread with its level and its slope.
struct Place {
    double x = 0.0;
    Estimate level = {};
    Estimate slope = {};
};

/// Where the chamfer begins, or the contour ends: from there on the mean slope is never below 1 in 3.
double treadEnd(const RimContour& contour, std::size_t tread) {
    constexpr double kOver = 3.0; // mm
    constexpr double kSteep = 1.0 / 3.0;
    const auto& points = contour.points;
    double end = points[tread].x;
    std::size_t ahead = tread;
    for (std::size_t i = tread; i < points.size(); ++i) {
        while (ahead < points.size() && points[ahead].x < points[i].x + kOver) {
            ++ahead;
        }
        if (ahead == points.size()) {
            break;
        }
        if (points[ahead].y - points[i].y < kSteep * (points[ahead].x - points[i].x)) {
            end = std::max(end, points[i].x);
        }
    }
    return end;
}

/// The part of a contour up to an x on the tread.
RimContour upTo(const RimContour& contour, std::size_t tread, double x) {
    RimContour part = contour;
    const auto isBeyond = [x](const Vector& p) { return p.x > x; };
    part.points.erase(
        std::find_if(part.points.begin() + static_cast<std::ptrdiff_t>(tread), part.points.end(), isBeyond),
        part.points.end());
    return part;
}

/// The tread, without what is behind its end.
class Tread {
public:
    Tread(const RimContour& contour, std::size_t tape, double end) : contour_(upTo(contour, tape, end)), near_(tape) {}

    std::optional<Place> at(double x) {
        const auto& points = contour_.points;
        while (near_ > 0 && points[near_].x > x) {
            --near_;
        }
        while (near_ + 1 < points.size() && points[near_].x < x) {
            ++near_;
        }
        const Frame frame{{x, points[near_].y}};
        const auto fit = ContourFit::fit(contour_, near_, frame, kOnTread);
        return fit ? std::optional(Place{x, fit->estimateAt(0.0).plus(frame.origin.y), fit->slopeEstimateAt(0.0)})
                   : std::nullopt;
    }

private:
    RimContour contour_;
    std::size_t near_;
};

/// An extreme of the tread between the places on a grid, and how far noise moves its level towards that extreme on the average.
struct Extreme {
    Place place = {};
    double bias = 0.0;
};

/// Refines the extreme at a place of a grid by the parabola through that place and those beside it.
Extreme refined(Tread& tread, const std::vector<Place>& grid, std::size_t i) {
    constexpr std::size_t kBeside = 4;
    Extreme extreme{grid[i]};
    if (i < kBeside || i + kBeside >= grid.size()) {
        return extreme;
    }
    const double before = grid[i - kBeside].level.value();
    const double behind = grid[i + kBeside].level.value();
    const double span = kBeside * kStep;
    const double bend = (before - 2.0 * grid[i].level.value() + behind) / (span * span);
    const double shift = bend != 0.0 ? -(behind - before) / (2.0 * span) / bend : 0.0;
    if (std::abs(shift) <= kStep) {
        extreme.place = tread.at(grid[i].x + shift).value_or(grid[i]);
    }
    // The extreme of a parabola with the bend c is s^2 / 2c beyond the place where noise gives it the slope s.
    const double slope = extreme.place.slope.deviation();
    const double deviation = extreme.place.level.deviation();
    extreme.bias = bend != 0.0 ? std::clamp(-slope * slope / (2.0 * bend), -deviation, deviation) : 0.0;
    return extreme;
}

} // namespace

std::optional<TreadHollow> findHollow(const RimContour& contour, std::size_t tape) {
    const double middle = contour.points[tape].x;
    const double end = std::min(treadEnd(contour, tape), middle + kMostOutside);
    if (end < middle + kLeastOutside) {
        return {};
    }
    Tread tread(contour, tape, end);
    std::vector<Place> grid;
    for (double x = middle - kFirst; x <= end - kStep; x += kStep) {
        const std::optional<Place> place = tread.at(x);
        if (!place) {
            return {};
        }
        grid.push_back(*place);
    }
    const auto depth = [&](std::size_t a, std::size_t b) { return grid[a].level.value() - grid[b].level.value(); };
    std::size_t bottom = 0;
    std::size_t crest = 1;
    std::size_t lowest = 0;
    for (std::size_t b = 1; b < grid.size(); ++b) {
        if (depth(lowest, b) > depth(bottom, crest)) {
            bottom = lowest;
            crest = b;
        }
        lowest = depth(b, lowest) > 0.0 ? b : lowest;
    }
    const Extreme low = refined(tread, grid, bottom);
    const Extreme high = refined(tread, grid, crest);
    return TreadHollow{low.place.level.plus(high.place.level, -1.0).plus(high.bias - low.bias),
                       {low.place.x, low.place.level.value()},
                       {high.place.x, high.place.level.value()}};
}

} // namespace KxInspect::detail
