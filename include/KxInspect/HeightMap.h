// Height maps: a scan on a regular grid.
#pragma once

#include "Export.h"
#include "Range.h"
#include "Scan.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace KxInspect {

/// The heights y of a scan in the cells of a grid with one pitch along both axes: rows along z, columns along x.
struct HeightMap {
    int rows = 0;
    int columns = 0;
    float pitch = std::numeric_limits<float>::quiet_NaN(); ///< distance of rows and of columns, mm
    float gap = std::numeric_limits<float>::quiet_NaN(); ///< largest distance of points between which was interpolated
    float originX = std::numeric_limits<float>::quiet_NaN(); ///< x of column 0, mm
    float originZ = std::numeric_limits<float>::quiet_NaN(); ///< z of row 0, mm
    std::vector<float> heights; ///< row by row, mm; NaN for a cell without a height
    /// How many rows are between two profiles, which are further apart than the pitch: their heights are interpolated.
    int interpolatedRows = 0;

    /// The index of a cell in `heights`. The arguments are not checked.
    std::size_t position(int row, int column) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
    }
    float at(int row, int column) const { return heights[position(row, column)]; } ///< mm, NaN if missing; as above
};

struct HeightMapOptions {
    float pitch = 1.0f; ///< distance of rows and of columns, mm, above 0
    /// The largest distance of neighbouring points of a profile, and of neighbouring profiles, between which heights are
    /// interpolated, mm, above 0.
    /// Nothing: 2.5 times the larger of the pitch and the median distance of the points, which bridges one missing
    /// point.
    std::optional<float> gap = {};
};

/// Makes a height map: a row for each profile, columns from the smallest x of the scan on, up to but not including the
/// largest x when it is a multiple of the pitch away (points at 0 to 5 make 5 columns at pitch 1). The height of a cell is on
/// the straight line between the neighbouring points of its profile. Beyond the ends of a profile the line through its
/// last two points is extended by up to `gap`, if its slope is at most 1. Profiles that are less than one pitch apart are
/// resampled first: each point goes to the nearer one of two slices. Where they are further apart than one pitch, rows
/// between two profiles are on the straight lines between their heights; where one of the two has none, or they are further
/// apart than `gap`, there is no height.
/// Throws an Error NoResult when the pitch gives fewer than 2 rows or columns or the scan has no points, BadArgument
/// (key "pitch" or "gap") when an option is not above 0, the map would have more than 40 million cells, or the profiles
/// (by their median distance) are further apart than both the pitch and `gap`: most rows would be empty.
KXINSPECT_EXPORT HeightMap makeHeightMap(const Scan& scan, const HeightMapOptions& options,
                                         const Progress& progress = {});

/// For each cell the mean height, mm, of the at most blockSize x blockSize cells before it along both axes, the cell
/// itself not among them; NaN where none of these has a height, the first row and column included. Single precision.
/// Throws an Error BadArgument for a block size outside 1 to 1000, and for a map whose heights are not as many as its
/// rows and columns say.
KXINSPECT_EXPORT std::vector<float> blockMeans(const HeightMap& map, int blockSize);

} // namespace KxInspect
