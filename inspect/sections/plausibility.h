// Plausibility checks of the orientation and kind of cross-sections.
#pragma once

#include <KxInspect/Profile.h>

#include <QtCore/QString>

#include <vector>

namespace KxInspect::detail {

/// A warning about too few points for reliable results: "has 12 points only"; empty otherwise.
QString fewPoints(std::size_t count);

/// Predicate of a sentence about a wheel that is a function of x: signs of a wrong orientation. Empty when y points down
/// and x outwards.
QString wheelContradiction(const std::vector<Point>& wheel);

/// The same for a rail that is cut at `gaugeDepth`, mm below its top.
QString railContradiction(const std::vector<Point>& rail, float gaugeDepth);

} // namespace KxInspect::detail
