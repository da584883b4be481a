// Profiles as points of plots.
#pragma once

#include "report/elements/plot.h"

#include <KxInspect/Profile.h>
#include <KxMath/KxPoints.h>

#include <QtCore/QList>

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

namespace kxtool {

/// Appends the points of a profile to those of a plot.
inline void append(const QList<KxMath::KxPointXY>& profile, kxreport::Points& points) {
    for (const KxMath::KxPointXY& p : profile) {
        points.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y));
    }
}

/// The points of a profile for a plot.
inline kxreport::Points toPoints(const QList<KxMath::KxPointXY>& profile) {
    kxreport::Points points;
    append(profile, points);
    return points;
}

} // namespace kxtool
