// What the errors of the gauge itself do to the measures of a rim.
#pragma once

#include "inspect/wheel/rimMeasures.h"

#include <KxInspect/Wheel.h>

#include <vector>

namespace KxInspect::detail {

/// Adds the standard uncertainties of a gauge to those of the measures: what each measure changes by when the contour is
/// moved, turned or scaled by one of them (JCGM 100:2008, 5.1.3, by finite differences).
/// @param contour,isBackMeasured of which the measures are, as for measureRim()
void addGaugeError(const std::vector<Point>& contour, bool isBackMeasured, const GaugeError& error, RimMeasures& rim);

} // namespace KxInspect::detail
