// Block means of a height map.
#include "KxMath/KxMatrixWithHistos.h"

#include "grid/blockSums.h"
#include "lists/unfilledList.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace KxMath {

using detail::kNaN;

namespace {

int blockBegin(int end, int blockSize) {
    return static_cast<int>(std::clamp<qint64>(qint64(end) - blockSize, 0, std::numeric_limits<int>::max()));
}

/// The means of the blocks that end before a row and before each column. The sums of adjacent blocks are the lanes of
/// vectors: each is added up row by row and column by column of its block, since the order of the additions decides the
/// result. Counts of cells are integers; they are updated from block to block.
class BlockMeans {
public:
    BlockMeans(int columns, int blockSize)
        : columns_(std::max(columns, 0)), width_(std::clamp(blockSize, 0, columns_)), counts_(index(columns_)),
          means_(index(columns_)) {}

    /// The number of rows that it holds.
    int rowCount() const { return static_cast<int>(rows_.size()); }

    /// Takes the next row of the grid into the blocks that follow.
    void addRow(const float* cells) {
        Row row;
        row.cells.assign(index(width_ + columns_ + detail::kBlocksPerCall), 0.0f);
        row.counts.assign(index(columns_), 0);
        int count = 0; // of the cells in front of the column, as many as a block is wide
        for (int c = 0; c < columns_; ++c) {
            row.counts[index(c)] = count;
            counts_[index(c)] += count;
            const bool isFilled = !std::isnan(cells[c]);
            // A sum that starts at 0 is never -0, so that adding 0 in place of an empty cell does not change it.
            row.cells[index(width_ + c)] = isFilled ? cells[c] : 0.0f;
            count += isFilled ? 1 : 0;
            count -= c >= width_ && !std::isnan(cells[c - width_]) ? 1 : 0;
        }
        rows_.push_back(std::move(row));
    }

    /// Forgets the oldest row.
    void dropRow() {
        for (int c = 0; c < columns_; ++c) {
            counts_[index(c)] -= rows_.front().counts[index(c)];
        }
        rows_.pop_front();
    }

    /// The means of the blocks of the rows that it holds; 0 where all cells are empty.
    const std::vector<float>& calc() {
        std::vector<const float*> cells;
        for (const Row& row : rows_) {
            cells.push_back(row.cells.data());
        }
        const auto instructions = detail::widestInstructionSet();
        for (int start = 0; start < columns_; start += detail::kBlocksPerCall) {
            // The leftmost cell of a block is `width_` to the left of its column.
            const auto sums = detail::blockSums(cells.data(), rowCount(), start, width_, instructions);
            for (int c = start; c < std::min(columns_, start + detail::kBlocksPerCall); ++c) {
                const int count = counts_[index(c)];
                means_[index(c)] = count == 0 ? 0.0f : sums[index(c - start)] / static_cast<float>(count);
            }
        }
        return means_;
    }

private:
    struct Row {
        std::vector<float> cells; // `width_` zeros, the cells with 0 for empty ones, and zeros to read beyond the end
        std::vector<int> counts; // of each column: cells that are not empty in the part of the block in this row
    };

    static size_t index(int i) { return static_cast<size_t>(i); }

    int columns_;
    int width_;
    std::deque<Row> rows_;
    std::vector<int> counts_;
    std::vector<float> means_;
};

} // namespace

KxMatrixWithHistos::KxMatrixWithHistos() : minMean(kNaN), maxMean(kNaN), pendingSeeds(new QList<QPoint>) {}

KxMatrixWithHistos::KxMatrixWithHistos(const KxMatrixWithHistos& other) = default; // deliberately shares pendingSeeds

KxMatrixWithHistos::~KxMatrixWithHistos() {
    delete pendingSeeds;
}

KxMatrixWithHistos& KxMatrixWithHistos::operator=(const KxMatrixWithHistos& other) = default; // deliberately, as above

int KxMatrixWithHistos::calcFromMatrixCloud(KxMatrixCloud& matrix, int blockSize, int, float* minMeanOut,
                                            float* maxMeanOut) {
    minMean = kNaN;
    maxMean = kNaN;
    BlockMeans blocks(matrix.columns, blockSize);
    for (int r = 0; r < matrix.rows; ++r) {
        const int firstRow = blockBegin(r, blockSize);
        while (blocks.rowCount() > std::max(r - firstRow, 0)) {
            blocks.dropRow();
        }
        const std::vector<float>& means = blocks.calc();
        blocks.addRow(matrix.cells[r]);
        detail::UnfilledList<HistoCell> cells(std::max(matrix.columns, 0));
        HistoCell* cell = cells.extend(std::max(matrix.columns, 0));
        for (int c = 0; c < matrix.columns; ++c) {
            const float mean = means[static_cast<size_t>(c)];
            std::construct_at(cell++, HistoCell{mean, blockBegin(c, blockSize), c, firstRow, r, false, false});
            detail::widen(minMean, maxMean, mean);
        }
        histoRows.append(cells.take());
    }
    if (maxMeanOut != nullptr) {
        *maxMeanOut = maxMean;
    }
    if (minMeanOut != nullptr) {
        *minMeanOut = minMean;
    }
    return static_cast<int>(histoRows.size());
}

int KxMatrixWithHistos::toPointCloud(KxPointCloud<KxPointXYZ>& cloud, float step) {
    if (!cloud.isEmpty()) {
        cloud.clear();
    }
    const QList<QList<HistoCell>>& rows = histoRows;
    for (qsizetype r = 0; r < rows.size(); ++r) {
        // The first row gives the number of columns; rows of another matrix may be shorter.
        const qsizetype columns = std::min(rows.first().size(), rows[r].size());
        for (qsizetype c = 0; c < columns; ++c) {
            const float mean = rows[r][c].mean;
            if (!std::isnan(mean) && mean != 0.0f) {
                cloud.points.append(KxPointXYZ(static_cast<float>(c) * step, mean, static_cast<float>(r) * step));
            }
        }
    }
    return cloud.size();
}

} // namespace KxMath
