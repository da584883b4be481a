// The orientation of a cross-section, found from its shape.
#include "inspect/sections/shownOrientation.h"

#include "inspect/fitting/lookUp.h"
#include "inspect/sections/plausibility.h"
#include "inspect/sections/runningSurface.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr Orientation kOrientations[] = {{false, false}, {false, true}, {true, false}, {true, true}};

constexpr float kSideDepth = 10.0f; // mm below the top, where the sides of a head are nearly upright

/// The side of a contour that touches when it stands in an orientation; empty for points that follow no contour.
std::vector<Point> surfaceIn(const std::vector<Point>& contour, Orientation orientation, SectionKind kind) {
    Profile section{contour};
    orient(section, orientation);
    return keepRunningSurface(section, kind) ? section.points : std::vector<Point>();
}

/// Whether the middle of a contour is above the line through its ends; y points down. Empty for a flat one.
std::optional<bool> isConvex(const std::vector<Point>& contour) {
    constexpr double kLeastRise = 0.5; // mm; a head rises by more over its width
    if (contour.size() < 3) {
        return {};
    }
    double rise = 0.0;
    const Point& first = contour.front();
    const Point& last = contour.back();
    for (const Point& p : contour) {
        const double part = first.x == last.x ? 0.5
                                              : (static_cast<double>(p.x) - static_cast<double>(first.x)) /
                                                    (static_cast<double>(last.x) - static_cast<double>(first.x));
        const double chord =
            static_cast<double>(first.y) + part * (static_cast<double>(last.y) - static_cast<double>(first.y));
        rise += (chord - static_cast<double>(p.y)) / static_cast<double>(contour.size());
    }
    return std::abs(rise) < kLeastRise ? std::nullopt : std::optional(rise > 0.0);
}

/// Where a surface first is above a level, from its small x on, and last. A side that hangs over ends above the level.
std::optional<std::pair<float, float>> sidesAt(const std::vector<Point>& surface, float level) {
    const auto isAbove = [level](const Point& p) { return p.y < level; };
    const auto first = std::find_if(surface.begin(), surface.end(), isAbove);
    const auto last = std::find_if(surface.rbegin(), surface.rend(), isAbove);
    return first == surface.end() ? std::nullopt : std::optional(std::pair{first->x, last->x});
}

/// How much lower the side of the large x of a head is than the other one, mm; NaN where that cannot be said.
double outerFall(const std::vector<Point>& surface, float top) {
    constexpr double kFromMiddle = 20.0;
    const auto sides = sidesAt(surface, top + kSideDepth);
    if (!sides) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double middle = (static_cast<double>(sides->first) + static_cast<double>(sides->second)) / 2.0;
    return valueAt(surface, middle + kFromMiddle) - valueAt(surface, middle - kFromMiddle);
}

/// Whether a head is the same from both sides, but for the steepest parts.
bool isEven(const std::vector<Point>& surface) {
    constexpr double kMost = 0.1; // mm
    constexpr int kPlaces = 9; // on each side
    const double middle = (static_cast<double>(surface.front().x) + static_cast<double>(surface.back().x)) / 2.0;
    const double step = (static_cast<double>(surface.back().x) - middle) / (kPlaces + 1);
    bool isSame = true;
    for (int i = 1; i <= kPlaces; ++i) {
        const double difference = valueAt(surface, middle + i * step) - valueAt(surface, middle - i * step);
        isSame = isSame && std::abs(difference) <= kMost; // NaN: false
    }
    return isSame;
}

} // namespace

ShownOrientation shownByWheel(const std::vector<Point>& contour) {
    ShownOrientation shown;
    for (const Orientation& orientation : kOrientations) {
        const std::vector<Point> surface = surfaceIn(contour, orientation, SectionKind::Wheel);
        if (surface.empty() || !wheelContradiction(surface).isEmpty()) {
            continue;
        }
        if (shown.isRecognised) {
            return {true, {}}; // in two ways
        }
        shown = {true, orientation};
    }
    return shown;
}

ShownOrientation shownByRail(const std::vector<Point>& contour, float gaugeDepth) {
    const std::optional<bool> convex = isConvex(contour);
    if (!convex) {
        return {};
    }
    ShownOrientation shown{true, {!*convex, {}}};
    const std::vector<Point> surface = surfaceIn(contour, shown.orientation, SectionKind::Rail);
    if (surface.empty()) {
        return {};
    }
    Profile upright{contour};
    orient(upright, shown.orientation);
    const Point top = *std::min_element(upright.points.begin(), upright.points.end(), isHigher);
    const auto reachesDown = [&](bool isOutside, float depth) {
        constexpr float kTolerance = 0.1f;
        return std::any_of(upright.points.begin(), upright.points.end(), [&](const Point& p) {
            return (p.x > top.x) == isOutside && p.y >= top.y + depth - kTolerance;
        });
    };
    const bool isOuterDeep = reachesDown(true, gaugeDepth);
    if (reachesDown(false, gaugeDepth) != isOuterDeep) {
        shown.orientation.isMirrored = isOuterDeep;
    } else if (reachesDown(false, kSideDepth) && reachesDown(true, kSideDepth)) {
        constexpr double kLeastFall = 0.5; // mm; an inclination of 1 in 40 gives 1 mm
        const double fall = outerFall(surface, top.y);
        if (std::abs(fall) >= kLeastFall) {
            shown.orientation.isMirrored = fall > 0.0;
        }
    }
    shown.isEven = isEven(surface);
    return shown;
}

} // namespace KxInspect::detail
