// Profiles as points of plots.
#pragma once

#include "report/elements/plot.h"

#include <KxInspect/Profile.h>

#include <vector>

namespace kxreport {

inline QPointF toPlot(const KxInspect::Point& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

/// The points of a profile or curve for a plot.
inline Points toPoints(const std::vector<KxInspect::Point>& profile) {
    Points points;
    points.reserve(profile.size());
    for (const KxInspect::Point& p : profile) {
        points.push_back(toPlot(p));
    }
    return points;
}

} // namespace kxreport
