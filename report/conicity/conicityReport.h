// The report of a conicity calculation.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

namespace kxreport {

/// A self-contained HTML page: the profiles in place with the contact points, the contact points over the displacement,
/// the difference of radii and the conicity with its value at the shown amplitude.
QString conicityReport(const KxInspect::ConicityResult& result);

} // namespace kxreport
