// The measures of a rim from its contour, each with its uncertainty.
#pragma once

#include "inspect/wheel/contourFit.h"

#include <KxInspect/Wheel.h>

#include <array>
#include <optional>
#include <string>

namespace KxInspect::detail {

/// The true value of each measure, as the contour shows it, in the order of kWheelMeasures; for measures that are not seen, why.
struct RimMeasures {
    std::array<std::optional<Estimate>, kWheelMeasures.size()> values = {};
    std::array<std::string, kWheelMeasures.size()> reasons = {};
    bool isBackUnsure =
        false; ///< how far the flange back is off is not known; widths from it have no standard deviation
    WheelPlaces places = {};
};

/// Measures a contour.
/// @param isBackMeasured whether the flange back is where the contour shows it; otherwise it is at 0 without doubt
RimMeasures measureRim(const RimContour& contour, bool isBackMeasured);

} // namespace KxInspect::detail
