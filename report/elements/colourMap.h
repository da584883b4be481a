// Maps from values to colours.
#pragma once

#include "report/elements/png.h"

#include <QtCore/QString>

#include <optional>

namespace kxreport {

enum class ColourMap {
    Heights, ///< from dark blue to yellow: that of the reports
    Viridis, ///< from dark purple to yellow
    Cividis, ///< from dark blue to yellow; it looks alike to readers with red-green blindness
    Gray, ///< from black to white
    Deviations, ///< from blue over nearly white to red, for values around 0
};

/// The colour at a part from 0 to 1 of a range. The lightness increases all along, that of Deviations up to the middle and
/// decreases from there on, so that the order of values can also be seen in grey-scale prints.
Rgb mapColour(ColourMap map, double part);

/// The map of a name: "viridis", "cividis", "gray"; nothing for another.
std::optional<ColourMap> colourMapByName(const QString& name);

} // namespace kxreport
