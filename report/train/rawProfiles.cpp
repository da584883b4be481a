// Raw profiles of a recording with the lines of its sensor over them.
#include "report/train/rawProfiles.h"

#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"

#include <algorithm>

namespace kxreport {

using KxInspect::Line;
using KxInspect::Point;

namespace {

constexpr int kWidth = 540;
constexpr int kHeight = 460;

bool isBelow(const Point& p, const Line& line) {
    return static_cast<double>(p.y) < static_cast<double>(line.slope) * static_cast<double>(p.x) +
                                          static_cast<double>(line.intercept); // NaN: false
}

QString draw(const RawProfiles& raw, const QString& id, Range x, Range y) {
    Points others;
    Points below;
    for (const Point& p : raw.points) {
        (raw.level && isBelow(p, *raw.level) ? below : others).push_back(toPlot(p));
    }
    x = x.padded(0.05);
    y = y.padded(0.05);
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    Plot plot(id, raw.title, kWidth, kHeight, {QStringLiteral("x, mm"), x}, {QStringLiteral("y, mm"), y});
    plot.addDots(others, colour::kPale, 1.5,
                 raw.level ? QStringLiteral("beyond the level line") : QStringLiteral("points"));
    if (!below.empty()) {
        plot.addDots(below, raw.below, 1.6, QStringLiteral("below it"));
    }
    for (const LineOver& line : raw.lines) {
        plot.addStraight(static_cast<double>(line.line.slope), static_cast<double>(line.line.intercept), line.stroke,
                         line.name);
    }
    return plot.svg();
}

} // namespace

QString rawProfilesPlot(const RawProfiles& raw) {
    Range x;
    Range y;
    for (const Point& p : raw.points) {
        x.include(static_cast<double>(p.x));
        y.include(static_cast<double>(p.y));
    }
    return draw(raw, raw.id, x, y);
}

QString nearProfilesPlot(const RawProfiles& raw) {
    Range x;
    Range y;
    for (const Point& p : raw.points) {
        if (raw.level && isBelow(p, *raw.level)) {
            x.include(static_cast<double>(p.x));
            y.include(static_cast<double>(p.y));
        }
    }
    return x.isEmpty() ? QString() : draw(raw, raw.id + QStringLiteral("-near"), x, y);
}

std::size_t countBelow(const std::vector<Point>& points, const Line& line) {
    return static_cast<std::size_t>(
        std::count_if(points.begin(), points.end(), [&](const Point& p) { return isBelow(p, line); }));
}

} // namespace kxreport
