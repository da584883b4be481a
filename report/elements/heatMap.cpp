// Heights as colours.
#include "report/elements/heatMap.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kxreport {

namespace {

constexpr int kColours = 255; ///< of a palette of 256, whose entry 0 is transparent

constexpr std::array<Rgb, 6> kStops = {0x1b1f5e, 0x1f4e8c, 0x14808f, 0x3fa873, 0x9fcb52, 0xfde74c};

double channel(Rgb colour, int shift) {
    return static_cast<double>((colour >> shift) & 0xffu);
}

} // namespace

Rgb heightColour(double part) {
    const double at = std::clamp(part, 0.0, 1.0) * (kStops.size() - 1);
    const size_t stop = std::min(static_cast<size_t>(at), kStops.size() - 2);
    const double rest = at - static_cast<double>(stop);
    Rgb colour = 0;
    for (const int shift : {16, 8, 0}) {
        const double value = channel(kStops[stop], shift) * (1.0 - rest) + channel(kStops[stop + 1], shift) * rest;
        colour |= static_cast<Rgb>(std::lround(value)) << shift;
    }
    return colour;
}

QString colourText(Rgb colour) {
    return QStringLiteral("#%1").arg(colour, 6, 16, QLatin1Char('0'));
}

PaletteImage heatImage(const Raster& raster, const Range& range) {
    PaletteImage image{raster.width, raster.height, {}, {0xffffff}};
    for (int i = 0; i < kColours; ++i) {
        image.palette.push_back(heightColour(static_cast<double>(i) / (kColours - 1)));
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
