// Pictures as PNG files (ISO/IEC 15948:2004) in memory.
#pragma once

#include <QtCore/QByteArray>

#include <cstdint>
#include <vector>

namespace kxreport {

/// A colour as 0xRRGGBB.
using Rgb = std::uint32_t;

/// An image with a palette, the top row first. Colour 0 of the palette is transparent.
struct PaletteImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels; ///< width * height
    std::vector<Rgb> palette; ///< 1 to 256 colours, one for each pixel value
};

/// The bytes of a PNG file.
QByteArray png(const PaletteImage& image);

} // namespace kxreport
