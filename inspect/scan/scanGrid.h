// A scan as a height map, its block means and its seeds.
#pragma once

#include "inspect/scan/scanFile.h"
#include "report/elements/axis.h"

#include <KxMath/KxPointCloud.h>

#include <QtCore/QStringList>

#include <deque>
#include <vector>

namespace kxtool {

/// A value for each cell, rows along z and columns along x; NaN where there is none.
struct CellValues {
    int rows = 0;
    int columns = 0;
    std::vector<float> values;

    size_t position(int row, int column) const {
        return static_cast<size_t>(row) * static_cast<size_t>(columns) + static_cast<size_t>(column);
    }
    kxreport::Range range() const;
    qint64 count() const;
};

/// A seed with the figures of its points.
struct Seed {
    KxMath::KxPointCloud<KxMath::KxPointXYZ> cloud; ///< in the coordinates of the scan, its range calculated
    float mean; ///< of the heights
    float deviation; ///< standard deviation of the heights
    float area; ///< mm2
    QString file; ///< name inside the folder of the seeds, empty when it is not written
};

/// How the seeds were searched.
struct SeedSearch {
    float start;
    float end;
    float step;
    float tolerance;
    int minCount;
    float maxDrop;
};

/// What became of a cell, seeds being counted from 1.
constexpr int kNotInSeed = 0;
constexpr int kCutAway = -1;

struct ScanGrid {
    int records = 0;
    int emptyRecords = 0;
    float pitch;
    float gap;
    float originX; ///< x of column 0
    float originZ; ///< z of row 0
    CellValues heights;
    CellValues means; ///< that of cell (r, c) is over the block of cells before it, NaN for none
    int cutCount = 0; ///< what the library's edge cutting returned
    qint64 cutCells = 0; ///< cells that lost their height
    SeedSearch search;
    std::vector<int> owners; ///< for each cell its seed, kNotInSeed or kCutAway
    std::deque<Seed> seeds; ///< in the order in which they were found
    QStringList warnings;
};

/// Makes the grid and searches it. Throws a CommandError when the pitch gives no grid, or one that is too large.
ScanGrid measureGrid(const GridOptions& options, Scan& scan, Progress& progress);

} // namespace kxtool
