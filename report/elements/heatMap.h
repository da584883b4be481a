// Heights as colours.
#pragma once

#include "report/elements/axis.h"
#include "report/elements/colourMap.h"
#include "report/elements/png.h"

#include <QtCore/QString>

#include <vector>

namespace kxreport {

/// Values row by row, the top row first. Values that are not finite are empty.
struct Raster {
    int width = 0;
    int height = 0;
    std::vector<float> values; ///< width * height
};

/// The colour at a part from 0 to 1 of a range of heights in reports.
inline Rgb heightColour(double part) {
    return mapColour(ColourMap::Heights, part);
}

/// A colour as an SVG attribute: #rrggbb.
QString colourText(Rgb colour);

/// The values as colours of the range. Values beyond it get the colour of its end, empty values are transparent.
PaletteImage heatImage(const Raster& raster, const Range& range, ColourMap map = ColourMap::Heights);

} // namespace kxreport
