// Height maps in the classes of KxMath.
#include "inspect/scan/blocks.h"

#include "inspect/scan/arguments.h"

#include <algorithm>
#include <new>

namespace KxInspect {

namespace {

using KxMath::HistoCell;

void copyMap(const HeightMap& map, KxMath::KxMatrixCloud& matrix) {
    const float unknown = std::numeric_limits<float>::quiet_NaN(); // the ranges are only stored
    if (!matrix.initMatrix(map.columns, map.rows, map.pitch, map.originX, unknown, unknown, unknown, map.originZ,
                           unknown)) {
        throw std::bad_alloc();
    }
    for (int r = 0; r < map.rows; ++r) {
        std::copy_n(&map.heights[map.position(r, 0)], map.columns, matrix.cells[r]);
    }
}

bool isEmptyBlock(const KxMath::KxMatrixCloud& matrix, const HistoCell& cell) {
    for (int r = cell.firstRow; r < cell.row; ++r) {
        for (int c = cell.firstColumn; c < cell.column; ++c) {
            if (!std::isnan(matrix.cells[r][c])) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

namespace detail {

Blocks::Blocks(const HeightMap& map, int blockSize) {
    constexpr int kLargestBlock = 1000;
    checkMap(map);
    if (blockSize < 1 || blockSize > kLargestBlock) {
        failArgument(
            "blockSize",
            QStringLiteral("blockSize needs a whole number from 1 to %1, got %2").arg(kLargestBlock).arg(blockSize));
    }
    copyMap(map, matrix);
    histos.calcFromMatrixCloud(matrix, blockSize, 0, nullptr, nullptr);
}

void Blocks::forgetEmptyBlocks() {
    for (QList<HistoCell>& row : histos.histoRows) {
        for (HistoCell& cell : row) {
            if (cell.mean == 0.0f && isEmptyBlock(matrix, cell)) {
                cell.mean = std::numeric_limits<float>::quiet_NaN();
            }
        }
    }
}

std::vector<float> Blocks::means() const {
    std::vector<float> means;
    for (const QList<HistoCell>& row : histos.histoRows) {
        for (const HistoCell& cell : row) {
            means.push_back(cell.mean);
        }
    }
    return means;
}

} // namespace detail

std::vector<float> blockMeans(const HeightMap& map, int blockSize) {
    detail::Blocks blocks(map, blockSize);
    blocks.forgetEmptyBlocks();
    return blocks.means();
}

} // namespace KxInspect
