// Heights as colours.
#include "report/elements/heatMap.h"

#include <algorithm>
#include <cmath>

namespace kxreport {

namespace {

constexpr int kColours = 255; ///< of a palette of 256, whose entry 0 is transparent

} // namespace

QString colourText(Rgb colour) {
    return QStringLiteral("#%1").arg(colour, 6, 16, QLatin1Char('0'));
}

PaletteImage heatImage(const Raster& raster, const Range& range, ColourMap map) {
    PaletteImage image{raster.width, raster.height, {}, {0xffffff}};
    for (int i = 0; i < kColours; ++i) {
        image.palette.push_back(mapColour(map, static_cast<double>(i) / (kColours - 1)));
    }
    image.pixels.reserve(raster.values.size());
    const double size = range.isEmpty() || range.size() <= 0.0 ? 1.0 : range.size();
    for (const float value : raster.values) {
        const double part = std::clamp((static_cast<double>(value) - range.min) / size, 0.0, 1.0);
        image.pixels.push_back(std::isfinite(value) ? static_cast<std::uint8_t>(1 + std::lround(part * (kColours - 1)))
                                                    : 0);
    }
    return image;
}

} // namespace kxreport
