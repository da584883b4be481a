// Growing a region of block means.
#include "grid/regionGrowing.h"

#include "lists/checked.h"

#include <cmath>

namespace KxMath::detail {

namespace {

constexpr int kMaxDepth = 201;

struct Side {
    int row;
    int column;
};
constexpr Side kSides[] = {{0, -1}, {0, 1}, {-1, 0}, {1, 0}}; // the order decides the order of the region
constexpr int kSideCount = 4;

} // namespace

bool GrowthLimits::isDescending(float mean) const {
    return refMean - mean >= maxDrop; // NaN: false
}

bool GrowthLimits::leadsTo(float mean, float neighbourMean, bool isDescending) const {
    const float d = mean - neighbourMean;
    return isDescending ? 0.0f < d && d < maxStep : std::abs(d) < maxStep; // NaN: false
}

RegionGrower::RegionGrower(const HistoTable& cells, QList<QPoint>& region, QList<QPoint>& postponed,
                           const GrowthLimits& limits)
    : cells_(cells), region_(region), postponed_(postponed), limits_(limits) {
    for (const QPoint& cell : std::as_const(postponed)) {
        arePostponed_.insert(cell);
    }
}

void RegionGrower::grow(int row, int column, int depth) {
    enter(*cells_.at(row, column), row, column, depth);
    while (!path_.empty()) {
        Visit& at = path_.back();
        if (at.triedSides == kSideCount) {
            path_.pop_back();
            continue;
        }
        const Side side = kSides[at.triedSides++];
        const int neighbourRow = at.row + side.row;
        const int neighbourColumn = at.column + side.column;
        HistoCell* const neighbour = cells_.at(neighbourRow, neighbourColumn);
        if (neighbour != nullptr && !neighbour->visited && limits_.leadsTo(at.mean, neighbour->mean, at.isDescending)) {
            enter(*neighbour, neighbourRow, neighbourColumn, at.depth);
        }
    }
}

void RegionGrower::enter(HistoCell& cell, int row, int column, int depth) {
    if (cell.visited) {
        return;
    }
    if (depth >= kMaxDepth) {
        postpone(QPoint(row, column));
        return;
    }
    region_.append(QPoint(row, column));
    cell.visited = true;
    path_.push_back({row, column, depth + 1, cell.mean, limits_.isDescending(cell.mean), 0});
}

void RegionGrower::postpone(const QPoint& cell) {
    if (arePostponed_.insert(cell)) {
        postponed_.append(cell);
    }
}

void RegionGrower::growPostponed() {
    while (!postponed_.isEmpty()) {
        detach(postponed_);
        const QPoint cell = postponed_.takeLast();
        arePostponed_.erase(cell);
        grow(cell.x(), cell.y(), 0);
    }
}

} // namespace KxMath::detail
