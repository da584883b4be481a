// Heights as colours.
#pragma once

#include "report/elements/axis.h"
#include "report/elements/png.h"

#include <QtCore/QString>

#include <vector>

namespace kxreport {

/// Values side by side, the top row first. What is not finite is empty.
struct Raster {
    int width = 0;
    int height = 0;
    std::vector<float> values; ///< width * height
};

/// The colour of a part from 0 to 1 of a range of heights, from dark blue to yellow. The lightness rises all along, so
/// that the order of heights is also seen on grey paper and by colour-blind readers.
Rgb heightColour(double part);

/// A colour as an attribute takes it: #rrggbb.
QString colourText(Rgb colour);

/// The values as colours of their range; those beyond it have the colour of its end, empty ones none.
PaletteImage heatImage(const Raster& raster, const Range& range);

} // namespace kxreport
