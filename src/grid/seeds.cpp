// Finding seeds: connected patches of a height map without steps.
#include "KxMath/KxMatrixWithHistos.h"

#include "grid/regionGrowing.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace KxMath {

namespace {

struct Candidate {
    float mean;
    int row;
    int column;
};

/// The cells from which regions may start, for levels that fall. A level takes all cells in its band, so that none has
/// to be looked at again, and cells above the band of one level are above that of all levels to come. The search over
/// many levels therefore costs no more than one over few.
class SeedCandidates {
public:
    SeedCandidates(const QList<QList<HistoCell>>& rows, float tolerance) : tolerance_(tolerance) {
        if (!(tolerance > 0.0f)) { // NaN: true; no mean is that close to a level
            return;
        }
        for (int r = 0; r < rows.size(); ++r) {
            // The first row tells the number of columns; rows of another matrix may be shorter.
            const qsizetype columns = std::min(rows.first().size(), rows[r].size());
            for (int c = 0; c < columns; ++c) {
                const HistoCell& cell = rows[r][c];
                if (!cell.visited && !std::isnan(cell.mean)) {
                    cells_.push_back({cell.mean, r, c});
                }
            }
        }
        const auto isAbove = [](const Candidate& a, const Candidate& b) { return a.mean > b.mean; };
        std::stable_sort(cells_.begin(), cells_.end(), isAbove);
    }

    bool isExhausted() const { return next_ == cells_.size(); }

    /// The cells whose mean is less than the tolerance from a level, row by row.
    std::vector<Candidate> takeNear(float level) {
        while (!isExhausted() && cells_[next_].mean - level >= tolerance_) {
            ++next_;
        }
        std::vector<Candidate> near;
        while (!isExhausted() && std::abs(cells_[next_].mean - level) < tolerance_) { // NaN: false
            near.push_back(cells_[next_]);
            ++next_;
        }
        std::sort(near.begin(), near.end(), [](const Candidate& a, const Candidate& b) {
            return a.row != b.row ? a.row < b.row : a.column < b.column;
        });
        return near;
    }

private:
    float tolerance_;
    std::vector<Candidate> cells_; ///< the highest first
    size_t next_ = 0;
};

} // namespace

int KxMatrixWithHistos::extractSeeds(KxMatrixCloud& matrix, QList<KxPointCloud<KxPointXYZ>*>* seeds, float startLevel,
                                     float endLevel, float levelStep, float tolerance, int minCount, float maxDrop) {
    if (seeds == nullptr) {
        return 0;
    }
    SeedCandidates candidates(histoRows, tolerance);
    for (float level = startLevel; !candidates.isExhausted();) {
        for (const Candidate& start : candidates.takeNear(level)) {
            if (std::as_const(histoRows)[start.row][start.column].visited) {
                continue;
            }
            auto cloud = std::make_unique<KxPointCloud<KxPointXYZ>>();
            if (gatherSeed(matrix, *cloud, start.row, start.column, tolerance, minCount, maxDrop) >= minCount) {
                seeds->append(cloud.release());
            }
        }
        const float next = level - levelStep;
        if (!(next < level && endLevel <= next)) { // NaN: true; a step that does not advance ends the search
            break;
        }
        level = next;
    }
    return static_cast<int>(seeds->size());
}

int KxMatrixWithHistos::gatherSeed(KxMatrixCloud& matrix, KxPointCloud<KxPointXYZ>& cloud, int row, int column,
                                   float maxStep, int minCount, float maxDrop) {
    const float refMean = std::as_const(histoRows)[row][column].mean;
    QList<QPoint> region;
    pendingSeeds->clear();
    detail::RegionGrower grower(histoRows, region, *pendingSeeds, {refMean, maxStep, maxDrop});
    grower.grow(row, column, 0); // the first cell that would be taken from the list
    grower.growPostponed();
    if (region.size() < minCount) {
        return 0;
    }
    for (const QPoint& at : std::as_const(region)) {
        HistoCell& cell = histoRows[at.x()][at.y()];
        if (!cell.taken) {
            matrix.extractToPointCloud(cloud, cell.firstColumn, cell.firstRow, cell.column - cell.firstColumn,
                                       cell.row - cell.firstRow, true);
            cell.taken = true;
        }
    }
    return cloud.size();
}

void KxMatrixWithHistos::recFindNeighbours(QList<QPoint>& region, int row, int column, float refMean, float maxStep,
                                           float maxDrop, int depth) {
    detail::RegionGrower(histoRows, region, *pendingSeeds, {refMean, maxStep, maxDrop}).grow(row, column, depth);
}

int KxMatrixWithHistos::freePointCloudList(QList<KxPointCloud<KxPointXYZ>*> list) {
    int count = 0;
    for (KxPointCloud<KxPointXYZ>* const cloud : std::as_const(list)) {
        if (cloud != nullptr) {
            delete cloud;
            ++count;
        }
    }
    return count;
}

} // namespace KxMath
