// Cutting the rims of a scanned object out of a height map.
#include "KxMath/KxMatrixWithHistos.h"

#include "lists/checked.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <limits>

namespace KxMath {

namespace {

/// Cuts at steps between neighbouring means, and counts.
class EdgeCutter {
public:
    EdgeCutter(KxMatrixCloud& matrix, float threshold) : matrix_(matrix), threshold_(threshold) {}

    /// Cuts where the mean of the inner cell minus that of the outer one is below the threshold, and counts `more` for
    /// each cut. @return whether there was one
    bool cut(HistoCell& inner, HistoCell& outer, int more) {
        const float d = inner.mean - outer.mean;
        if (!(d < threshold_)) { // NaN: true, so that no cell is cut twice
            return false;
        }
        count_ += empty(inner) + empty(outer) + more;
        return true;
    }

    int count() const { return static_cast<int>(std::min<qint64>(count_, std::numeric_limits<int>::max())); }

private:
    int empty(HistoCell& cell) {
        cell.mean = detail::kNaN;
        return matrix_.trim(cell.firstColumn, cell.column, cell.firstRow, cell.row);
    }

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
    const qsizetype rows = histoRows.size();
    if (rows < 1) {
        return 0;
    }
    const qsizetype columns = std::as_const(histoRows).first().size();
    const auto twoThirds = [](qsizetype n) { return 2 * n / 3; };
    EdgeCutter cutter(matrix, threshold);
    QList<HistoCell>* const histos = detail::writable(histoRows);

    // Row by row, as they lie in memory: what belongs to one column still comes in its order.
    const auto cutRow = [&](qsizetype innerRow, qsizetype outerRow, int more) {
        QList<HistoCell>& inner = histos[innerRow];
        QList<HistoCell>& outer = histos[outerRow];
        HistoCell* const innerCells = detail::writable(inner);
        HistoCell* const outerCells = detail::writable(outer);
        // Rows of another matrix may be shorter than the first one.
        const qsizetype count = std::min({columns, inner.size(), outer.size()});
        for (qsizetype c = 0; c < count; ++c) {
            if (cutter.cut(innerCells[c], outerCells[c], more)) {
                mark(innerCells[c]);
            }
        }
    };
    for (qsizetype r = 1; r < rows / 3; ++r) {
        cutRow(r, r - 1, 0);
    }
    for (qsizetype r = rows - 2; r >= twoThirds(rows); --r) {
        cutRow(r, r + 1, 1); // deliberately, unlike at the first rows
    }
    for (QList<HistoCell>& row : detail::writableSpan(histoRows)) {
        HistoCell* const cells = detail::writable(row);
        const auto cut = [&](qsizetype inner, qsizetype outer) {
            if (std::max(inner, outer) < row.size() && cutter.cut(cells[inner], cells[outer], 1)) {
                mark(cells[outer]); // deliberately the outer one
            }
        };
        for (qsizetype c = 1; c < columns / 3; ++c) {
            cut(c, c - 1);
        }
        for (qsizetype c = columns - 2; c >= twoThirds(columns); --c) {
            cut(c, c + 1);
        }
    }
    return cutter.count();
}

} // namespace KxMath
