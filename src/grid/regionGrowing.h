// Growing a region of block means.
#pragma once

#include "KxMath/KxMatrixWithHistos.h"

#include "grid/cellSet.h"
#include "lists/checked.h"

#include <span>
#include <vector>

namespace KxMath::detail {

/// When a region may grow from a cell to its neighbour, see KxMatrixWithHistos::gatherSeed().
struct GrowthLimits {
    float refMean;
    float maxStep;
    float maxDrop;

    bool isDescending(float mean) const;
    bool leadsTo(float mean, float neighbourMean, bool isDescending) const;
};

/// The rows of a grid of block means, detached from copies once and then accessed without a check.
class HistoTable {
public:
    explicit HistoTable(QList<QList<HistoCell>>& rows) {
        rows_.reserve(static_cast<size_t>(rows.size()));
        for (QList<HistoCell>& row : writableSpan(rows)) {
            rows_.push_back(writableSpan(row));
        }
    }

    /// Null where there is no cell.
    HistoCell* at(int row, int column) const {
        const size_t r = static_cast<size_t>(row); // huge when it is negative
        const size_t c = static_cast<size_t>(column);
        return r < rows_.size() && c < rows_[r].size() ? &rows_[r][c] : nullptr;
    }

private:
    std::vector<std::span<HistoCell>> rows_;
};

/// Grows a region depth first up to a depth of 201 cells. Cells further away are postponed: a list holds each of them
/// once, and they are grown from later, with a depth that starts at 0.
///
/// The path from the start is kept here and not on the call stack.
class RegionGrower {
public:
    /// The lists are those of the caller; `postponed` must not be changed by others meanwhile.
    RegionGrower(const HistoTable& cells, QList<QPoint>& region, QList<QPoint>& postponed, const GrowthLimits& limits);

    /// Grows from a cell that is there, `depth` being the number of cells that lead to it.
    void grow(int row, int column, int depth);
    /// Grows from the postponed cells, the last one first, until there are none.
    void growPostponed();

private:
    /// A cell on the path.
    struct Visit {
        int row;
        int column;
        int depth;
        float mean;
        bool isDescending;
        int triedSides;
    };

    void enter(HistoCell& cell, int row, int column, int depth);
    void postpone(const QPoint& cell);

    const HistoTable& cells_;
    QList<QPoint>& region_;
    QList<QPoint>& postponed_;
    GrowthLimits limits_;
    std::vector<Visit> path_;
    CellSet arePostponed_; ///< the cells in `postponed_`
};

} // namespace KxMath::detail
