// The report of a conicity calculation.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

#include <vector>

namespace kxreport {

/// A self-contained HTML page: the profiles in place with the contact points, the contact points over the displacement,
/// the difference of radii and the conicity with its value at the shown amplitude. Without a result it says why and shows
/// the profiles.
QString conicityReport(const KxInspect::ConicityResult& result);

/// The rows of the table: (amplitude, conicity) at 1, 2, ... 10 mm as far as the curve goes, NaN without a conicity.
std::vector<KxInspect::Point> wholeAmplitudes(const KxInspect::ConicityResult& result);

} // namespace kxreport
