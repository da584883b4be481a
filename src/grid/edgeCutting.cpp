// Cutting the rims of a scanned object out of a height map.
#include "KxMath/KxMatrixWithHistos.h"

#include "numeric/bounds.h"

#include <algorithm>
#include <limits>

namespace KxMath {

namespace {

struct Position {
    int row;
    int column;
};

/// Cuts at steps between neighbouring means, and counts.
class EdgeCutter {
public:
    EdgeCutter(QList<QList<HistoCell>>& rows, KxMatrixCloud& matrix, float threshold)
        : rows_(rows), matrix_(matrix), threshold_(threshold) {}

    /// Cuts where the mean of the inner cell minus that of the outer one is below the threshold.
    /// @return the inner and the outer cell, null without a cut
    std::pair<HistoCell*, HistoCell*> cut(Position innerAt, Position outerAt) {
        if (!exists(innerAt) || !exists(outerAt)) {
            return {nullptr, nullptr};
        }
        HistoCell& inner = rows_[innerAt.row][innerAt.column];
        HistoCell& outer = rows_[outerAt.row][outerAt.column];
        const float d = inner.mean - outer.mean;
        if (!(d < threshold_)) { // NaN: true, so that no cell is cut twice
            return {nullptr, nullptr};
        }
        inner.mean = detail::kNaN;
        outer.mean = detail::kNaN;
        add(empty(inner));
        add(empty(outer));
        return {&inner, &outer};
    }

    void add(int count) { count_ += count; }
    int count() const { return static_cast<int>(std::min<qint64>(count_, std::numeric_limits<int>::max())); }

private:
    // Rows of another matrix may be shorter than the first one.
    bool exists(Position at) const { return at.column < std::as_const(rows_)[at.row].size(); }

    int empty(const HistoCell& cell) { return matrix_.trim(cell.firstColumn, cell.column, cell.firstRow, cell.row); }

    QList<QList<HistoCell>>& rows_;
    KxMatrixCloud& matrix_;
    float threshold_;
    qint64 count_ = 0;
};

void mark(HistoCell& cell) {
    cell.visited = true;
    cell.taken = true;
}

} // namespace

int KxMatrixWithHistos::cutEdgeEffects(KxMatrixCloud& matrix, float threshold) {
    const int rows = static_cast<int>(histoRows.size());
    if (rows < 1) {
        return 0;
    }
    const int columns = static_cast<int>(std::as_const(histoRows).first().size());
    const auto twoThirds = [](int n) { return static_cast<int>(2 * qint64(n) / 3); };
    EdgeCutter cutter(histoRows, matrix, threshold);

    for (int c = 0; c < columns; ++c) {
        for (int r = 1; r < rows / 3; ++r) {
            if (HistoCell* const inner = cutter.cut({r, c}, {r - 1, c}).first) {
                mark(*inner);
            }
        }
        for (int r = rows - 2; r >= twoThirds(rows); --r) {
            if (HistoCell* const inner = cutter.cut({r, c}, {r + 1, c}).first) {
                mark(*inner);
                cutter.add(1); // deliberately, unlike at the first rows
            }
        }
    }
    for (int r = 0; r < rows; ++r) {
        for (int c = 1; c < columns / 3; ++c) {
            if (HistoCell* const outer = cutter.cut({r, c}, {r, c - 1}).second) { // deliberately the outer one
                mark(*outer);
                cutter.add(1);
            }
        }
        for (int c = columns - 2; c >= twoThirds(columns); --c) {
            if (HistoCell* const outer = cutter.cut({r, c}, {r, c + 1}).second) {
                mark(*outer);
                cutter.add(1);
            }
        }
    }
    return cutter.count();
}

} // namespace KxMath
