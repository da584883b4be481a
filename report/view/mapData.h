// A height map as numbers for the scripts of a page.
#pragma once

#include "report/elements/axis.h"
#include "report/view/profileBlocks.h"
#include "report/view/viewPage.h"

#include <KxInspect/HeightMap.h>

namespace kxreport {

QJsonObject jsonRange(const Range& range);

/// From the lowest to the highest height.
Range heightRange(const KxInspect::HeightMap& map);

/// Adds the scripts that show a map on the page of a report, in its live part.
void addMapScripts(const ViewSettings& settings, Frame& frame);

/// Adds the map; at a level of fittingPage() above 0 only the medians, lowest and highest of blocks of cells.
/// @param isLong whether the positions of its rows are lengths, else numbers of profiles
/// @param across what the positions of its columns are
/// @return what is left out, a sentence; empty for nothing
QString addMap(const KxInspect::HeightMap& map, bool isLong, int level, const ViewSettings& settings, Frame& frame,
               LeftOut& leftOut, const QString& across = QStringLiteral("x across, mm"));

} // namespace kxreport
