// Finding seeds: connected patches of a height map without steps.
#include "KxMath/KxMatrixWithHistos.h"

#include "grid/regionGrowing.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numeric>
#include <vector>

namespace KxMath {

namespace {

/// The levels of a search, `step` apart by a running sum.
class Levels {
public:
    Levels(float start, float end, float step) : next_(start), end_(end), step_(step) {}

    /// The next `maxCount` levels or those that are left.
    std::vector<float> take(size_t maxCount) {
        std::vector<float> levels;
        while (!isOver_ && levels.size() < maxCount) {
            levels.push_back(next_);
            const float next = next_ - step_;
            isOver_ = !(next < next_ && end_ <= next); // NaN: true; a step that does not advance ends the search
            next_ = next;
        }
        return levels;
    }

private:
    float next_;
    float end_;
    float step_;
    bool isOver_ = false;
};

struct Candidate {
    float mean;
    int row;
    int column;
};

/// The cells from which regions may start, for falling levels. A cell is taken out at the first level that it is near
/// to, and so is examined once for all levels of a call.
class SeedCandidates {
public:
    SeedCandidates(const QList<QList<HistoCell>>& rows, float tolerance) : tolerance_(tolerance) {
        if (!(tolerance > 0.0f)) { // NaN: true; no mean is that close to a level
            return;
        }
        // The first row gives the number of columns; rows of another matrix may be shorter.
        const auto columnsOf = [&](const QList<HistoCell>& row) { return std::min(rows.first().size(), row.size()); };
        const auto addColumns = [&](qsizetype sum, const QList<HistoCell>& row) { return sum + columnsOf(row); };
        cells_.reserve(static_cast<size_t>(std::accumulate(rows.begin(), rows.end(), qsizetype(0), addColumns)));
        for (int r = 0; r < rows.size(); ++r) {
            const qsizetype columns = columnsOf(rows[r]);
            for (int c = 0; c < columns; ++c) {
                const HistoCell& cell = rows[r][c];
                if (!cell.visited && !std::isnan(cell.mean)) {
                    cells_.push_back({cell.mean, r, c});
                }
            }
        }
    }

    size_t count() const { return cells_.size(); }

    /// The cells whose mean is less than the tolerance from one of the levels, level by level and row by row.
    std::vector<Candidate> takeNear(const std::vector<float>& levels) {
        std::vector<std::uint32_t> bands; // of the cells in `taken`: the index of their level
        std::vector<Candidate> taken;
        bands.reserve(cells_.size());
        taken.reserve(cells_.size());
        std::vector<size_t> places(levels.size() + 1);
        size_t left = 0;
        size_t band = 0;
        for (const Candidate& cell : cells_) {
            band = findBand(cell.mean, levels, band);
            if (band == levels.size()) { // below all levels: kept for the next ones
                cells_[left++] = cell;
            } else if (cell.mean - levels[band] < tolerance_) { // a cell above is above all further levels, too
                bands.push_back(static_cast<std::uint32_t>(band));
                taken.push_back(cell);
                ++places[band + 1];
            }
        }
        cells_.resize(left);
        // A counting sort by level: within a level the cells keep their order.
        std::partial_sum(places.begin(), places.end(), places.begin());
        std::vector<Candidate> ordered(taken.size());
        for (size_t i = 0; i < taken.size(); ++i) {
            ordered[places[bands[i]]++] = taken[i];
        }
        return ordered;
    }

private:
    /// The first of the falling levels that a mean is not more than the tolerance below; their number when there is
    /// none. Adjacent cells are mostly near the same level, hence the guess.
    size_t findBand(float mean, const std::vector<float>& levels, size_t guess) const {
        const auto isFarBelow = [&](float level) { return !(mean - level > -tolerance_); }; // NaN: true
        const bool isGuessLow = guess < levels.size() && !isFarBelow(levels[guess]);
        if (isGuessLow && (guess == 0 || isFarBelow(levels[guess - 1]))) {
            return guess;
        }
        return static_cast<size_t>(std::partition_point(levels.begin(), levels.end(), isFarBelow) - levels.begin());
    }

    float tolerance_;
    std::vector<Candidate> cells_; ///< row by row
};

/// See KxMatrixWithHistos::gatherSeed().
int gather(const detail::HistoTable& cells, QList<QPoint>& postponed, KxMatrixCloud& matrix,
           KxPointCloud<KxPointXYZ>& cloud, int row, int column, float maxStep, int minCount, float maxDrop) {
    QList<QPoint> region;
    postponed.clear();
    detail::RegionGrower grower(cells, region, postponed, {cells.at(row, column)->mean, maxStep, maxDrop});
    grower.grow(row, column, 0); // the first cell that would be taken from the list
    grower.growPostponed();
    if (region.size() < minCount) {
        return 0;
    }
    for (const QPoint& at : std::as_const(region)) {
        HistoCell& cell = *cells.at(at.x(), at.y());
        if (!cell.taken) {
            matrix.extractToPointCloud(cloud, cell.firstColumn, cell.firstRow, cell.column - cell.firstColumn,
                                       cell.row - cell.firstRow, true);
            cell.taken = true;
        }
    }
    return cloud.size();
}

} // namespace

int KxMatrixWithHistos::extractSeeds(KxMatrixCloud& matrix, QList<KxPointCloud<KxPointXYZ>*>* seeds, float startLevel,
                                     float endLevel, float levelStep, float tolerance, int minCount, float maxDrop) {
    constexpr size_t kManyLevels = 4096;
    if (seeds == nullptr) {
        return 0;
    }
    SeedCandidates candidates(histoRows, tolerance);
    const detail::HistoTable cells(histoRows);
    Levels levels(startLevel, endLevel, levelStep);
    while (candidates.count() > 0) {
        // Levels in blocks of at least as many as there are cells: a pass over the cells costs no more than its levels.
        const std::vector<float> block = levels.take(std::max(kManyLevels, candidates.count()));
        if (block.empty()) {
            break;
        }
        for (const Candidate& start : candidates.takeNear(block)) {
            if (cells.at(start.row, start.column)->visited) {
                continue;
            }
            auto cloud = std::make_unique<KxPointCloud<KxPointXYZ>>();
            if (gather(cells, *pendingSeeds, matrix, *cloud, start.row, start.column, tolerance, minCount, maxDrop) >=
                minCount) {
                seeds->append(cloud.get());
                static_cast<void>(cloud.release()); // now that the list has it
            }
        }
    }
    return static_cast<int>(seeds->size());
}

int KxMatrixWithHistos::gatherSeed(KxMatrixCloud& matrix, KxPointCloud<KxPointXYZ>& cloud, int row, int column,
                                   float maxStep, int minCount, float maxDrop) {
    const detail::HistoTable cells(histoRows);
    return gather(cells, *pendingSeeds, matrix, cloud, row, column, maxStep, minCount, maxDrop);
}

void KxMatrixWithHistos::recFindNeighbours(QList<QPoint>& region, int row, int column, float refMean, float maxStep,
                                           float maxDrop, int depth) {
    const detail::HistoTable cells(histoRows);
    detail::RegionGrower(cells, region, *pendingSeeds, {refMean, maxStep, maxDrop}).grow(row, column, depth);
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
