// Raw profiles of a recording with the lines of its sensor over them.
#pragma once

#include "report/elements/plot.h"
#include "report/elements/svg.h"

#include <KxInspect/Profile.h>

#include <optional>
#include <vector>

namespace kxreport {

/// A line over the profiles.
struct LineOver {
    KxInspect::Line line;
    QString name;
    Stroke stroke;
};

/// The stroke of each kind of line, alike on all pages.
inline constexpr Stroke kReferenceStroke{colour::kGreen, 1.6, "7 4"};
inline constexpr Stroke kLevelStroke{colour::kOrange, 1.6, ""};
inline constexpr Stroke kLowStroke{colour::kOrange, 1.6, "2 3"};

/// Raw profiles in two colours: what is below the level line, and the rest.
struct RawProfiles {
    QString id; ///< of the plot, unique on the page
    QString title;
    const std::vector<KxInspect::Point>& points;
    std::optional<KxInspect::Line> level; ///< absent: no point is below
    std::vector<LineOver> lines; ///< all that are drawn, the level line among them
    const char* below = colour::kBlue;
};

/// A plot of half the page's width that shows all points. Points below the level line come last, over the others.
QString rawProfilesPlot(const RawProfiles& raw);

/// The same, of the points below the level line and what is around them. Empty when there are none.
QString nearProfilesPlot(const RawProfiles& raw);

/// How many of the points are below a line.
std::size_t countBelow(const std::vector<KxInspect::Point>& points, const KxInspect::Line& line);

} // namespace kxreport
