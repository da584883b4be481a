// The report of a conicity calculation.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace kxreport {

/// A self-contained HTML page: the profiles in place with the contact points, the contact points over the displacement,
/// the difference of radii and the conicity with its value at the shown amplitude. Without a result it says why and shows
/// the profiles.
QString conicityReport(const KxInspect::ConicityResult& result, const PageOrigin& origin = {});

/// The rows of the table, as far as the curve goes.
std::vector<KxInspect::ConicityRow> reachedRows(const KxInspect::ConicityResult& result);

/// A conicity with its interval in the digits that this allows: "0.16 (0.14 to 0.19)"; a dash without one.
QString conicityText(const std::optional<float>& conicity, const KxInspect::Interval& interval);

/// What was smoothed: "smoothed over 1.5 to 7.7 mm", or "not smoothed".
QString smoothingText(const KxInspect::PlacedSection& section);

/// "0.5", "3"
QString amplitudeText(float amplitude);

} // namespace kxreport
