// What the contour of a rim adds to a measured wheel.
#pragma once

#include "inspect/wheel/rimMeasures.h"

#include <KxInspect/Wheel.h>

namespace KxInspect::detail {

/// Adds the railways' measures to a wheel whose smooth profile was measured, and the intervals of all.
void addContourResults(const RimMeasures& rim, WheelResult& result);

} // namespace KxInspect::detail
