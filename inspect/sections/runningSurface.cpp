// The side of a cross-section that can be in contact, as a function of x.
#include "inspect/sections/runningSurface.h"

#include "inspect/fitting/lookUp.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect {

namespace {

using detail::isLeft;

bool isNaN(const Point& p) {
    return std::isnan(p.x) || std::isnan(p.y);
}

bool isRising(const std::vector<Point>& points) {
    const auto isNotRising = [](const Point& a, const Point& b) { return !(a.x < b.x); };
    return std::adjacent_find(points.begin(), points.end(), isNotRising) == points.end();
}

/// Whether the line through the points is a contour, and no walk through points in no order.
bool isContour(const std::vector<Point>& points) {
    constexpr double kMostLength = 50.0; // of width and height; noisy flange backs have about 5
    const auto span = [&points](float Point::*value) {
        const auto isLess = [value](const Point& a, const Point& b) { return a.*value < b.*value; };
        const auto [least, most] = std::minmax_element(points.begin(), points.end(), isLess);
        return static_cast<double>((*most).*value) - static_cast<double>((*least).*value);
    };
    double length = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        length += std::hypot(static_cast<double>(points[i].x) - static_cast<double>(points[i - 1].x),
                             static_cast<double>(points[i].y) - static_cast<double>(points[i - 1].y));
    }
    return length <= kMostLength * (span(&Point::x) + span(&Point::y)); // NaN: false
}

/// The places of samples from `from` to `to`: every 0.1 mm, accumulated as in the calculation, whose samples are then
/// these points, and `to`. Empty when there are too many, or when they cannot be told apart.
std::vector<float> samplePlaces(float from, float to) {
    constexpr float kStep = 0.1f;
    std::vector<float> places;
    if (!(to - from <= kMaxSectionWidth)) { // NaN: true
        return places;
    }
    float x = from;
    while (x < to) {
        if (!(x + kStep > x)) {
            return {};
        }
        places.push_back(x);
        x += kStep;
    }
    places.push_back(to);
    return places;
}

/// The value at `x` of the straight line between two points, the first of which is not on the right.
float onLine(const Point& left, const Point& right, float x, SectionKind kind) {
    if (left.x == right.x) {
        return kind == SectionKind::Wheel ? std::max(left.y, right.y) : std::min(left.y, right.y);
    }
    const double part = (static_cast<double>(x) - static_cast<double>(left.x)) /
                        (static_cast<double>(right.x) - static_cast<double>(left.x));
    return static_cast<float>(static_cast<double>(left.y) +
                              (static_cast<double>(right.y) - static_cast<double>(left.y)) * part);
}

/// y points down: a wheel touches with its largest y, a rail with its smallest.
bool isOutside(float a, float b, SectionKind kind) {
    return kind == SectionKind::Wheel ? a > b : a < b;
}

/// The outer side of a contour at places in ascending order, which it covers.
std::vector<Point> outerSide(const std::vector<Point>& contour, const std::vector<float>& places, SectionKind kind) {
    std::vector<Point> surface;
    surface.reserve(places.size());
    for (const float x : places) {
        surface.push_back({x, std::numeric_limits<float>::quiet_NaN()});
    }
    for (std::size_t i = 1; i < contour.size(); ++i) {
        const auto [left, right] = std::minmax(contour[i - 1], contour[i], isLeft);
        for (auto p = std::lower_bound(surface.begin(), surface.end(), left, isLeft);
             p != surface.end() && p->x <= right.x; ++p) {
            const float y = onLine(left, right, p->x, kind);
            if (std::isnan(p->y) || isOutside(y, p->y, kind)) {
                p->y = y;
            }
        }
    }
    return surface;
}

/// Where the line between two points reaches a height between theirs.
float crossing(const Point& above, const Point& below, float level) {
    const float part = (level - above.y) / (below.y - above.y);
    return above.x + (below.x - above.x) * part;
}

/// The smallest x of the contour that is not below a level, which is below its top.
float gaugePoint(const std::vector<Point>& contour, float level) {
    float first = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < contour.size(); ++i) {
        const Point& p = contour[i];
        if (p.y <= level) {
            first = std::min(first, p.x);
        }
        if (i > 0 && (p.y > level) != (contour[i - 1].y > level)) {
            const auto [above, below] = std::minmax(p, contour[i - 1], detail::isHigher);
            first = std::min(first, crossing(above, below, level));
        }
    }
    return first;
}

} // namespace

float detail::gaugePointOf(const std::vector<Point>& rail, float depth) {
    const auto top = std::min_element(rail.begin(), rail.end(), isHigher);
    if (top == rail.end()) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    return depth > 0.0f ? gaugePoint(rail, top->y + depth) : std::min_element(rail.begin(), rail.end(), isLeft)->x;
}

int detail::countHidden(const std::vector<Point>& points, const std::vector<Point>& surface, SectionKind kind,
                        float tolerance) {
    const auto isHidden = [&](const Point& p) {
        const double depth = valueAt(surface, static_cast<double>(p.x)) - static_cast<double>(p.y);
        return (kind == SectionKind::Wheel ? depth : -depth) > static_cast<double>(tolerance); // NaN: false
    };
    return static_cast<int>(std::count_if(points.begin(), points.end(), isHidden));
}

std::vector<Point> detail::partFrom(const std::vector<Point>& contour, float x, SectionKind kind) {
    std::vector<Point> part;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        const Point& p = contour[i];
        if (i > 0 && (p.x < x) != (contour[i - 1].x < x)) {
            const auto [left, right] = std::minmax(p, contour[i - 1], isLeft);
            part.push_back({x, onLine(left, right, x, kind)});
        }
        if (!(p.x < x)) {
            part.push_back(p);
        }
    }
    return part;
}

void orient(Profile& profile, Orientation orientation) {
    const bool isUp = orientation.isUp.value_or(false);
    const bool isMirrored = orientation.isMirrored.value_or(false);
    std::vector<Point>& points = profile.points;
    for (Point& p : points) {
        p = {isMirrored ? -p.x : p.x, isUp ? -p.y : p.y};
    }
    if (!points.empty() && points.front().x > points.back().x) { // NaN: false
        std::reverse(points.begin(), points.end());
    }
}

int dropMissing(Profile& profile) {
    const std::size_t before = profile.points.size();
    profile.points.erase(std::remove_if(profile.points.begin(), profile.points.end(), isNaN), profile.points.end());
    return static_cast<int>(before - profile.points.size());
}

bool cutAtGaugeDepth(Profile& rail, float depth) {
    constexpr float kTolerance = 0.01f;
    if (!(depth > 0.0f) || rail.points.size() < 2) {
        return true;
    }
    Profile whole = rail;
    dropMissing(whole);
    const std::vector<Point>& contour = whole.points;
    const auto top = std::min_element(contour.begin(), contour.end(), detail::isHigher);
    if (top == contour.end()) {
        return false;
    }
    const float level = top->y + depth;
    const auto isDeep = [&](const Point& p) { return p.x <= top->x && p.y >= level - kTolerance; };
    if (std::none_of(contour.begin(), contour.end(), isDeep)) {
        return false;
    }
    rail.points = detail::partFrom(contour, gaugePoint(contour, level), SectionKind::Rail);
    return true;
}

std::optional<int> keepRunningSurface(Profile& section, SectionKind kind) {
    std::vector<Point>& points = section.points;
    if (isRising(points)) {
        return 0;
    }
    if (!isContour(points)) {
        return {};
    }
    const auto [left, right] = std::minmax_element(points.begin(), points.end(), isLeft);
    const std::vector<float> places = samplePlaces(left->x, right->x);
    if (places.empty()) {
        return 0;
    }
    std::vector<Point> surface = outerSide(points, places, kind);
    constexpr float kTolerance = 0.05f; // mm; the surface is straight between its points
    const int hidden = detail::countHidden(points, surface, kind, kTolerance);
    points = std::move(surface);
    return hidden;
}

} // namespace KxInspect
