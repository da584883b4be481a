// The side of a cross-section that can be in contact, as a function of x.
#include "inspect/sections/runningSurface.h"

#include "inspect/base/points.h"
#include "inspect/fitting/lookUp.h"

#include <KxMath/KxProfile.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect {

namespace {

bool isNaN(const Point& p) {
    return std::isnan(p.x) || std::isnan(p.y);
}

bool isRising(const std::vector<Point>& points) {
    const auto isNotRising = [](const Point& a, const Point& b) { return !(a.x < b.x); };
    return std::adjacent_find(points.begin(), points.end(), isNotRising) == points.end();
}

void sortByX(std::vector<Point>& points) {
    KxMath::KxProfile profile;
    profile.points = detail::toList(points);
    profile.sort(KxMath::KxSortAscending, KxMath::KxSortAscending);
    detail::assign(profile.points, points);
}

} // namespace

void orient(Profile& profile, Orientation orientation) {
    std::vector<Point>& points = profile.points;
    for (Point& p : points) {
        p = {orientation.isMirrored ? -p.x : p.x, orientation.isUp ? -p.y : p.y};
    }
    if (!points.empty() && points.front().x > points.back().x) { // NaN: false
        std::reverse(points.begin(), points.end());
    }
}

int keepRunningSurface(Profile& section, SectionKind kind) {
    constexpr float kCellWidth = 0.1f;
    std::vector<Point>& points = section.points;
    const std::size_t before = points.size();
    points.erase(std::remove_if(points.begin(), points.end(), isNaN), points.end());
    if (!isRising(points)) {
        sortByX(points);
        // y points down: a wheel touches with its largest y, a rail with its smallest.
        const auto isOutside = [kind](const Point& a, const Point& b) {
            return kind == SectionKind::Wheel ? a.y > b.y : a.y < b.y;
        };
        std::vector<Point> kept;
        float cellEnd = -std::numeric_limits<float>::infinity();
        for (const Point& p : points) {
            if (kept.empty() || p.x >= cellEnd) {
                kept.push_back(p);
                cellEnd = p.x + kCellWidth;
            } else if (isOutside(p, kept.back())) {
                kept.back().y = p.y;
            }
        }
        points = std::move(kept);
    }
    return static_cast<int>(before - points.size());
}

bool cutAtGaugeDepth(Profile& rail, float depth) {
    constexpr float kTolerance = 0.01f;
    std::vector<Point>& points = rail.points;
    if (!(depth > 0.0f) || points.size() < 2) {
        return true;
    }
    const auto top = std::min_element(points.begin(), points.end(), detail::isHigher);
    const float level = top->y + depth;
    auto above = top; // the last point towards the gauge side that is above the level
    while (above != points.begin() && (above - 1)->y < level) {
        --above;
    }
    if (above == points.begin()) {
        return above->y >= level - kTolerance;
    }
    Point& below = *(above - 1);
    const float part = (level - above->y) / (below.y - above->y);
    below = {above->x + (below.x - above->x) * part, level};
    points.erase(points.begin(), above - 1);
    return true;
}

void straighten(Profile& section) {
    constexpr float kStep = 0.1f; // accumulated as in the calculation, whose samples are then these points
    std::vector<Point>& points = section.points;
    if (points.size() < 2 || !(detail::widthOf(points) <= kMaxSectionWidth)) { // NaN: true
        return;
    }
    std::vector<Point> samples;
    for (float x = points.front().x; x < points.back().x;) {
        samples.push_back({x, static_cast<float>(detail::valueAt(points, static_cast<double>(x)))});
        const float next = x + kStep;
        if (!(next > x)) {
            return;
        }
        x = next;
    }
    samples.push_back(points.back());
    points = std::move(samples);
}

} // namespace KxInspect
