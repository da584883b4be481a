// Pictures of the cells of a grid: z to the right, x upwards.
#include "report/grid/gridPictures.h"

#include "report/elements/heatMap.h"
#include "report/elements/plot.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kxreport {

namespace {

using KxInspect::GridResult;
using KxInspect::HeightMap;

constexpr int kWidth = 1060;
constexpr double kLowest = 150; ///< of the area inside the axes, pixels
constexpr double kHighest = 640;

/// The extent of the grid, half a cell beyond the centres of the outer ones.
struct Extent {
    Range z;
    Range x;
};

Extent extentOf(const GridResult& grid) {
    const double pitch = static_cast<double>(grid.map.pitch);
    const double z = static_cast<double>(grid.map.originZ) - pitch / 2;
    const double x = static_cast<double>(grid.map.originX) - pitch / 2;
    return {{z, z + pitch * grid.map.rows}, {x, x + pitch * grid.map.columns}};
}

double areaWidth() {
    return Plot::areaWidth(kWidth) - Plot::kColourScaleWidth;
}

/// The height that gives both axes the same scale.
double wantedHeight(const Extent& extent) {
    return areaWidth() * extent.x.size() / extent.z.size();
}

Plot makePlot(const GridResult& grid, const char* id, const char* title) {
    Extent extent = extentOf(grid);
    const double wanted = wantedHeight(extent);
    const double height = std::clamp(wanted, kLowest, kHighest);
    if (wanted > kHighest) {
        makeScalesEqual(extent.z, extent.x, areaWidth(), height);
    }
    const int around = 100 - static_cast<int>(Plot::areaHeight(100)); // margins for axes and legend
    return Plot(QLatin1String(id), QLatin1String(title), kWidth, static_cast<int>(height) + around,
                {QStringLiteral("z along the scan, mm"), extent.z},
                {QStringLiteral("x across the scan, mm"), extent.x});
}

/// The number of cells along each axis that share a pixel; it limits the size of the images of large scans.
int cellsPerPixel(const HeightMap& map) {
    constexpr int kMostPixels = 1400;
    return (std::max(map.rows, map.columns) + kMostPixels - 1) / kMostPixels;
}

/// Turns the cells into pixels: z to the right, x upwards. `pixel` makes one from a range of rows and columns.
template <typename Pixel>
auto makePixels(const HeightMap& map, Pixel pixel) {
    const int size = cellsPerPixel(map);
    std::vector<decltype(pixel(0, 0, 0, 0))> pixels;
    for (int top = (map.columns - 1) / size; top >= 0; --top) {
        for (int r = 0; r < map.rows; r += size) {
            pixels.push_back(
                pixel(r, std::min(r + size, map.rows), top * size, std::min((top + 1) * size, map.columns)));
        }
    }
    return pixels;
}

/// The pixels of the image; the last ones may reach beyond the grid.
struct PixelGrid {
    int width;
    int height;
    Range z;
    Range x;
};

PixelGrid pixelGrid(const GridResult& grid) {
    const int size = cellsPerPixel(grid.map);
    const double pixel = static_cast<double>(grid.map.pitch) * size;
    const Extent extent = extentOf(grid);
    const int width = (grid.map.rows + size - 1) / size;
    const int height = (grid.map.columns + size - 1) / size;
    return {width, height, {extent.z.min, extent.z.min + width * pixel}, {extent.x.min, extent.x.min + height * pixel}};
}

/// Draws a value for each cell, moved by `shift` along both axes.
void addCells(const GridResult& grid, const std::vector<float>& values, const Range& colours, double shift,
              Plot& plot) {
    const PixelGrid pixels = pixelGrid(grid);
    Raster raster{pixels.width, pixels.height, {}};
    raster.values = makePixels(grid.map, [&](int fromRow, int toRow, int fromColumn, int toColumn) {
        double sum = 0.0;
        int count = 0;
        for (int r = fromRow; r < toRow; ++r) {
            for (int c = fromColumn; c < toColumn; ++c) {
                const double value = static_cast<double>(values[grid.map.position(r, c)]);
                if (std::isfinite(value)) {
                    sum += value;
                    ++count;
                }
            }
        }
        return static_cast<float>(sum / count); // NaN without a value
    });
    plot.addImage(pixels.z.min - shift, pixels.z.max - shift, pixels.x.min - shift, pixels.x.max - shift,
                  heatImage(raster, colours));
}

// The pixel values of the picture of the patches. The colours repeat when there are more patches than values.
constexpr int kNothing = 0;
constexpr int kOtherHeight = 1;
constexpr int kCut = 2;
constexpr int kFirstPatch = 3;
constexpr int kPatchColours = 250;

constexpr Rgb kOtherColour = 0xd5dbe1;
constexpr Rgb kCutColour = 0x59626c;

/// The first colours can be distinguished by colour-blind readers (Okabe and Ito, Color Universal Design, 2008); further
/// ones rotate the hue by the golden angle, so that neighbours differ.
Rgb patchColour(int index) {
    constexpr std::array<Rgb, 7> kFirst = {0x0072b2, 0xe69f00, 0x009e73, 0xcc79a7, 0xd55e00, 0x56b4e9, 0xf0e442};
    if (index < static_cast<int>(kFirst.size())) {
        return kFirst[static_cast<size_t>(index)];
    }
    constexpr double kGoldenAngle = 137.50776;
    const double hue = std::fmod(index * kGoldenAngle, 360.0) / 60.0;
    Rgb colour = 0;
    for (const double offset : {5.0, 3.0, 1.0}) { // red, green, blue of a hue of full saturation
        const double k = std::fmod(offset + hue, 6.0);
        const double value = 0.85 * (1.0 - 0.7 * std::clamp(std::min(k, 4.0 - k), 0.0, 1.0));
        colour = (colour << 8) | static_cast<Rgb>(std::lround(value * 255.0));
    }
    return colour;
}

int pixelOfCell(const GridResult& grid, size_t at) {
    const int owner = grid.found.owners[at];
    if (owner > KxInspect::InNoPatch) {
        return kFirstPatch + (owner - 1) % kPatchColours;
    }
    return owner == KxInspect::CutAway ? kCut : std::isfinite(grid.map.heights[at]) ? kOtherHeight : kNothing;
}

PaletteImage patchImage(const GridResult& grid) {
    const PixelGrid pixels = pixelGrid(grid);
    PaletteImage image{pixels.width, pixels.height, {}, {0xffffff, kOtherColour, kCutColour}};
    for (int i = 0; i < std::min<int>(kPatchColours, static_cast<int>(grid.found.patches.size())); ++i) {
        image.palette.push_back(patchColour(i));
    }
    image.pixels = makePixels(grid.map, [&](int fromRow, int toRow, int fromColumn, int toColumn) {
        int pixel = kNothing;
        for (int r = fromRow; r < toRow; ++r) {
            for (int c = fromColumn; c < toColumn; ++c) {
                pixel = std::max(pixel, pixelOfCell(grid, grid.map.position(r, c)));
            }
        }
        return static_cast<std::uint8_t>(pixel);
    });
    return image;
}

/// The number of each patch in its middle, on a white badge that is readable on any colour.
void addPatchNumbers(const GridResult& grid, Plot& plot) {
    constexpr std::size_t kMostNumbers = 200;
    for (std::size_t i = 0; i < std::min(grid.found.patches.size(), kMostNumbers); ++i) {
        const KxInspect::Patch& patch = grid.found.patches[i];
        plot.addBadge({patch.centreZ, patch.centreX}, QString::number(i + 1));
    }
}

/// The range of the colour scale.
Range colourRange(const KxInspect::Range& range) {
    Range result;
    result.include(static_cast<double>(range.min));
    result.include(static_cast<double>(range.max));
    return result;
}

} // namespace

bool isToScale(const GridResult& grid) {
    return wantedHeight(extentOf(grid)) >= kLowest;
}

QString heightPicture(const GridResult& grid) {
    const Range range = colourRange(grid.heightRange);
    Plot plot = makePlot(grid, "heights", "Height map");
    plot.addColourScale(range, QStringLiteral("height y, mm"));
    addCells(grid, grid.map.heights, range, 0.0, plot);
    return plot.svg();
}

QString meansPicture(const GridResult& grid) {
    const Range range = colourRange(grid.found.meanRange);
    Plot plot = makePlot(grid, "means", "Block means");
    plot.addColourScale(range, QStringLiteral("height y, mm"));
    const double middle = (grid.found.blockSize + 1) / 2.0 * static_cast<double>(grid.map.pitch);
    addCells(grid, grid.found.means, range, middle, plot);
    return plot.svg();
}

QString patchPicture(const GridResult& grid) {
    const PixelGrid pixels = pixelGrid(grid);
    Plot plot = makePlot(grid, "seeds", "Seeds");
    plot.keepRightFree(Plot::kColourScaleWidth);
    plot.addImage(pixels.z.min, pixels.z.max, pixels.x.min, pixels.x.max, patchImage(grid));
    addPatchNumbers(grid, plot);
    plot.addLegend(QStringLiteral("heights outside the seeds"), "#d5dbe1");
    if (grid.found.cutCells > 0) {
        plot.addLegend(QStringLiteral("cut away at the edges"), "#59626c");
    }
    return plot.svg();
}

} // namespace kxreport
