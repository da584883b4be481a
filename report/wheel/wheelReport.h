// The report of measured wheels.
#pragma once

#include "inspect/wheel/wheelMeasurement.h"

#include <vector>

namespace kxtool {

/// A self-contained HTML page: the table of measures, coloured where there are limits, and a drawing of each wheel with
/// its measures.
QString wheelReport(const std::vector<WheelResult>& results, const Limits& limits);

} // namespace kxtool
