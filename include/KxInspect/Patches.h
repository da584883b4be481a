// Flat patches of height maps.
#pragma once

#include "Export.h"
#include "HeightMap.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// The limits of a search, all heights in mm. NaN for defaults that no block mean tells.
struct PatchSearch {
    float start = std::numeric_limits<float>::quiet_NaN(); ///< height at which the search starts
    float end = std::numeric_limits<float>::quiet_NaN(); ///< height at which it ends
    float step = std::numeric_limits<float>::quiet_NaN(); ///< distance of the heights from start down to end
    /// A patch starts at a block mean closer than this to one of these heights, and grows to neighbours that differ by
    /// less than this.
    float tolerance = std::numeric_limits<float>::quiet_NaN();
    int minCount = 0; ///< smallest number of cells
    /// Once its mean is this much below the first one, a patch grows only downwards; NaN: no limit.
    float maxDrop = std::numeric_limits<float>::quiet_NaN();
};

struct PatchOptions {
    int blockSize = 4; ///< rows and columns of the blocks that means are taken of, 1 to 1000
    /// Cuts the rims of the scanned object away first: in the outer thirds of rows and columns, where the block mean
    /// minus that of the neighbour towards the border is less than this, mm (-5: where it drops inwards by more than
    /// 5 mm). Nothing: no cut.
    std::optional<float> edgeCut = {};
    std::optional<float> start = {}; ///< as in PatchSearch; default: the largest block mean
    std::optional<float> end = {}; ///< default: the smallest block mean
    std::optional<float> step = {}; ///< default: the tolerance
    /// Above 0. Default: ten times the median difference of neighbouring means, at least 1/500 of their range.
    std::optional<float> tolerance = {};
    std::optional<int> minCount = {}; ///< default: twice the longer side of the map
    float maxDrop = std::numeric_limits<float>::quiet_NaN();
};

/// A connected patch without steps.
struct Patch {
    /// A point for each cell, in the order in which they were reached: x and z where the scan has them, y the height.
    std::vector<Point3> points;
    std::int64_t cells = 0;
    float area = 0.0f; ///< of its cells, mm2
    float mean = std::numeric_limits<float>::quiet_NaN(); ///< of the heights, mm
    float deviation =
        std::numeric_limits<float>::quiet_NaN(); ///< standard deviation of the heights, mm; NaN for one cell
    Range x, y, z; ///< of the points, mm
    double centreX = std::numeric_limits<double>::quiet_NaN(); ///< mean x of the points, mm
    double centreZ = std::numeric_limits<double>::quiet_NaN(); ///< mean z of the points, mm
};

/// The states of the cells of a map.
enum CellOwner : int {
    CutAway = -1, ///< the cell lost its height at an edge
    InNoPatch = 0, ///< above: the number of the patch, from 1 on
};

/// The result of a search on a height map.
struct PatchResult {
    int blockSize = 0;
    std::vector<float> means; ///< for each cell that of its block, see blockMeans(); NaN also where it was cut away
    Range meanRange; ///< of the means, mm
    std::optional<float> edgeCut; ///< the threshold, where edges were cut
    int cutCount = 0; ///< what KxMatrixWithHistos::cutEdgeEffects() returned
    std::int64_t cutCells = 0; ///< cells that lost their height
    PatchSearch search; ///< the limits that were used
    std::vector<int> owners; ///< for each cell the number of its patch, or a CellOwner
    std::vector<Patch> patches; ///< in the order in which they were found
};

/// Finds the patches of a map. It has none where no connected group of `minCount` block means keeps to the limits.
/// Throws an Error BadArgument, with the name of the option as its key, for options outside their limits, and for a map
/// whose heights are not as many as its rows and columns say.
KXINSPECT_EXPORT PatchResult findPatches(const HeightMap& map, const PatchOptions& options = {},
                                         const Progress& progress = {});

} // namespace KxInspect
