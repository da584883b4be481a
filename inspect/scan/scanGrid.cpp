// A scan as a height map, its block means and its seeds.
#include "inspect/scan/scanGrid.h"

#include "inspect/fitting/median.h"
#include "inspect/scan/seedSearch.h"
#include "tools/kxmath/console/commandError.h"

#include <KxMath/KxMatrixCloud.h>
#include <KxMath/KxMatrixWithHistos.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

using KxMath::HistoCell;
using KxMath::KxMatrixCloud;
using KxMath::KxMatrixWithHistos;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxProfileZ;
using SeedCloud = KxMath::KxPointCloud<KxPointXYZ>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr double kMostCells = 4e7; ///< a block mean takes 24 bytes

/// The clouds that the library hands over, released at the end.
struct SeedList {
    QList<SeedCloud*> clouds;

    SeedList() = default;
    SeedList(const SeedList&) = delete;
    SeedList& operator=(const SeedList&) = delete;
    ~SeedList() { KxMatrixWithHistos::freePointCloudList(clouds); }
};

/// The median distance in x of neighbouring points, from a sample of the profiles.
float pointSpacing(const KxMath::KxProfileZSet& set) {
    constexpr qsizetype kSampled = 100;
    const qsizetype stride = std::max<qsizetype>(1, set.profiles.size() / kSampled);
    std::vector<float> distances;
    for (qsizetype i = 0; i < set.profiles.size(); i += stride) {
        std::vector<float> xs;
        for (const KxPointXY& p : set.profiles[i].points) {
            xs.push_back(p.x);
        }
        std::sort(xs.begin(), xs.end());
        for (size_t k = 1; k < xs.size(); ++k) {
            distances.push_back(xs[k] - xs[k - 1]);
        }
    }
    return median(distances, 0.0f);
}

void checkSize(const GridOptions& options, Scan& scan) {
    const double extent = static_cast<double>(scan.set.maxX) - static_cast<double>(scan.set.minX);
    const double columns = std::ceil(extent / static_cast<double>(options.step));
    const double rows = scan.set.size();
    const QString size =
        QStringLiteral("--step %1 makes a grid of %2 rows and %3 columns").arg(options.step).arg(rows).arg(columns);
    if (rows < 2 || !(columns >= 2)) {
        throw CommandError{NoResult, QStringLiteral("no height map: ") + size + QStringLiteral(", it needs 2 of each")};
    }
    if (rows * columns > kMostCells) {
        throw CommandError{WrongUse,
                           size + QStringLiteral(", more than %1 million cells in all").arg(kMostCells / 1e6)};
    }
}

CellValues valuesOf(const KxMatrixCloud& matrix) {
    CellValues result{matrix.rows, matrix.columns, {}};
    for (int r = 0; r < matrix.rows; ++r) {
        result.values.insert(result.values.end(), matrix.cells[r], matrix.cells[r] + matrix.columns);
    }
    return result;
}

CellValues valuesOf(const KxMatrixWithHistos& histos, int columns) {
    CellValues result{static_cast<int>(histos.histoRows.size()), columns, {}};
    for (const QList<HistoCell>& row : histos.histoRows) {
        for (const HistoCell& cell : row) {
            result.values.push_back(cell.mean);
        }
    }
    return result;
}

bool isEmptyBlock(const KxMatrixCloud& matrix, const HistoCell& cell) {
    for (int r = cell.firstRow; r < cell.row; ++r) {
        for (int c = cell.firstColumn; c < cell.column; ++c) {
            if (!std::isnan(matrix.cells[r][c])) {
                return false;
            }
        }
    }
    return true;
}

/// A block without heights has the mean 0, which would join patches near the height 0 to each other. NaN keeps it out
/// of the search, as it does for what was cut away.
void forgetEmptyBlocks(const KxMatrixCloud& matrix, KxMatrixWithHistos& histos) {
    for (QList<HistoCell>& row : histos.histoRows) {
        for (HistoCell& cell : row) {
            if (cell.mean == 0.0f && isEmptyBlock(matrix, cell)) {
                cell.mean = kNaN;
            }
        }
    }
}

/// Marks the cells that lost their height since the height map was made.
void markCutCells(const KxMatrixCloud& matrix, ScanGrid& grid) {
    for (int r = 0; r < matrix.rows; ++r) {
        for (int c = 0; c < matrix.columns; ++c) {
            const size_t at = grid.heights.position(r, c);
            if (std::isnan(matrix.cells[r][c]) && !std::isnan(grid.heights.values[at])) {
                grid.owners[at] = kCutAway;
                ++grid.cutCells;
            }
        }
    }
}

void addSeed(SeedCloud& found, ScanGrid& grid) {
    const int number = static_cast<int>(grid.seeds.size()) + 1;
    double sum = 0.0;
    double squares = 0.0; // of the distances from the first height, so that no digits are lost
    const double first = static_cast<double>(found.points.first().y);
    for (const KxPointXYZ& p : std::as_const(found.points)) {
        const long column = std::lround(static_cast<double>(p.x) / static_cast<double>(grid.pitch));
        const long row = std::lround(static_cast<double>(p.z) / static_cast<double>(grid.pitch));
        grid.owners[grid.heights.position(static_cast<int>(row), static_cast<int>(column))] = number;
        const double difference = static_cast<double>(p.y) - first;
        sum += difference;
        squares += difference * difference;
    }
    const double count = static_cast<double>(found.points.size());
    Seed& seed = grid.seeds.emplace_back();
    seed.cloud = found;
    seed.cloud.shift(grid.originX, 0.0f, grid.originZ);
    seed.cloud.calcRange();
    seed.mean = static_cast<float>(first + sum / count);
    seed.deviation = static_cast<float>(std::sqrt(std::max(0.0, squares / count - sum / count * (sum / count))));
    seed.area = static_cast<float>(count) * grid.pitch * grid.pitch;
}

void searchSeeds(const GridOptions& options, KxMatrixCloud& matrix, KxMatrixWithHistos& histos, ScanGrid& grid) {
    grid.search = chooseSearch(options.seeds, grid.means);
    const SeedSearch& search = grid.search;
    SeedList found;
    histos.extractSeeds(matrix, &found.clouds, search.start, search.end, search.step, search.tolerance, search.minCount,
                        search.maxDrop);
    for (SeedCloud* const cloud : std::as_const(found.clouds)) {
        addSeed(*cloud, grid);
    }
    if (grid.seeds.empty()) {
        grid.warnings.append(QStringLiteral("no seed: no connected patch of %1 cells, with steps below %2 mm, from "
                                            "height %3 to %4")
                                 .arg(search.minCount)
                                 .arg(search.tolerance)
                                 .arg(search.start)
                                 .arg(search.end));
    }
}

} // namespace

kxreport::Range CellValues::range() const {
    kxreport::Range range;
    for (const float value : values) {
        range.include(static_cast<double>(value));
    }
    return range;
}

qint64 CellValues::count() const {
    return std::count_if(values.begin(), values.end(), [](float value) { return !std::isnan(value); });
}

ScanGrid measureGrid(const GridOptions& options, Scan& scan, Progress& progress) {
    constexpr float kGapInSpacings = 2.5f; // bridges a single missing point
    checkSize(options, scan);
    ScanGrid grid;
    grid.records = scan.records;
    grid.emptyRecords = scan.emptyRecords;
    grid.pitch = options.step;
    grid.gap = options.gap ? *options.gap : kGapInSpacings * std::max(options.step, pointSpacing(scan.set));
    progress.step(QStringLiteral("making the grid"));
    KxMatrixCloud matrix;
    const int heights = scan.set.toMatrixCloud(matrix, grid.gap, kNaN);
    if (heights == 0) { // the column at the smallest x always has one
        throw CommandError{NoResult, QStringLiteral("no height map: there is no memory for it")};
    }
    grid.originX = matrix.minX;
    grid.originZ = scan.set.profiles.constFirst().z;
    grid.heights = valuesOf(matrix);
    grid.owners.assign(grid.heights.values.size(), kNotInSeed);
    progress.step(QStringLiteral("calculating block means"));
    KxMatrixWithHistos histos;
    histos.calcFromMatrixCloud(matrix, options.blockSize, 0, nullptr, nullptr);
    if (options.edgeCut) {
        grid.cutCount = histos.cutEdgeEffects(matrix, *options.edgeCut);
        markCutCells(matrix, grid);
    }
    forgetEmptyBlocks(matrix, histos);
    grid.means = valuesOf(histos, matrix.columns);
    progress.step(QStringLiteral("searching seeds"));
    searchSeeds(options, matrix, histos, grid);
    return grid;
}

} // namespace kxtool
