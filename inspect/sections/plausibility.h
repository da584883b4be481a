// What a cross-section shows of another orientation or kind than it should have.
#pragma once

#include <KxInspect/Profile.h>

#include <QtCore/QString>

#include <vector>

namespace KxInspect::detail {

/// What makes results doubtful when there are fewer points than usual: "has 12 points only"; empty otherwise.
QString fewPoints(std::size_t count);

/// Predicate of a sentence about a wheel that is a function of x: what it shows of another orientation. Empty when it
/// stands with y down and x outwards.
QString wheelContradiction(const std::vector<Point>& wheel);

/// The same for a rail that is cut at `gaugeDepth`, mm below its top.
QString railContradiction(const std::vector<Point>& rail, float gaugeDepth);

} // namespace KxInspect::detail
