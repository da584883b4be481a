// Block means of a height map.
#include "KxMath/KxMatrixWithHistos.h"

#include "numeric/bounds.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace KxMath {

using detail::kNaN;

namespace {

int blockBegin(int end, int blockSize) {
    return static_cast<int>(std::clamp<qint64>(qint64(end) - blockSize, 0, std::numeric_limits<int>::max()));
}

/// The sums of the blocks of one row, all side by side. Each is added up on its own, row by row and column by column of
/// its block.
class BlockSums {
public:
    explicit BlockSums(int columns) : sums_(static_cast<size_t>(std::max(columns, 0))), counts_(sums_.size()) {}

    void clear() {
        std::fill(sums_.begin(), sums_.end(), 0.0f);
        std::fill(counts_.begin(), counts_.end(), 0);
    }

    /// Adds the next row of the blocks.
    void add(const float* row, int blockSize) {
        const int columns = static_cast<int>(sums_.size());
        for (int distance = std::min(blockSize, columns - 1); distance > 0; --distance) {
            float* const sums = sums_.data() + distance;
            int* const counts = counts_.data() + distance;
            for (int c = 0; c < columns - distance; ++c) {
                // A sum that starts at 0 is never -0, so that adding 0 in place of an empty cell does not change it.
                const bool isEmpty = std::isnan(row[c]);
                sums[c] += isEmpty ? 0.0f : row[c];
                counts[c] += isEmpty ? 0 : 1;
            }
        }
    }

    float mean(int column) const {
        const size_t c = static_cast<size_t>(column);
        return counts_[c] == 0 ? 0.0f : sums_[c] / static_cast<float>(counts_[c]);
    }

private:
    std::vector<float> sums_;
    std::vector<int> counts_;
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
    BlockSums sums(matrix.columns);
    for (int r = 0; r < matrix.rows; ++r) {
        const int firstRow = blockBegin(r, blockSize);
        sums.clear();
        for (int blockRow = firstRow; blockRow < r; ++blockRow) {
            sums.add(matrix.cells[blockRow], blockSize);
        }
        QList<HistoCell> cells;
        cells.reserve(std::max(matrix.columns, 0));
        for (int c = 0; c < matrix.columns; ++c) {
            const float mean = sums.mean(c);
            cells.append({mean, blockBegin(c, blockSize), c, firstRow, r, false, false});
            detail::widen(minMean, maxMean, mean);
        }
        histoRows.append(cells);
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
        // The first row tells the number of columns; rows of another matrix may be shorter.
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
