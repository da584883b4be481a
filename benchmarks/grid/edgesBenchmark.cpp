// Steps at the borders of a height map.
#include "grid/jobs.h"

#include <limits>

namespace kxbench {

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kThreshold = -0.2f;

/// Cuts where the inner mean is lower than the outer one.
/// @return the number of matrix cells emptied, and `more`
int cut(KxMatrixCloud& matrix, HistoCell& inner, HistoCell& outer, HistoCell& marked, int more) {
    if (!(inner.mean - outer.mean < kThreshold)) {
        return 0;
    }
    int count = more;
    for (HistoCell* const cell : {&inner, &outer}) {
        cell->mean = kNaN;
        for (int r = cell->firstRow; r <= cell->row; ++r) {
            for (int c = cell->firstColumn; c <= cell->column; ++c, ++count) {
                matrix.cells[r][c] = kNaN;
            }
        }
    }
    marked.visited = true;
    marked.taken = true;
    return count;
}

/// All columns of a row before the next row, which keeps the order within each column.
void cutRowByRow(GridJob& j) {
    QList<QList<HistoCell>>& histos = j.histos.histoRows;
    const int rows = static_cast<int>(histos.size());
    const int columns = static_cast<int>(histos[0].size());
    int count = 0;
    for (int r = 1; r < rows / 3; ++r) {
        HistoCell* const inner = histos[r].data();
        HistoCell* const outer = histos[r - 1].data();
        for (int c = 0; c < columns; ++c) {
            count += cut(j.matrix, inner[c], outer[c], inner[c], 0);
        }
    }
    for (int r = rows - 2; r >= 2 * rows / 3; --r) {
        HistoCell* const inner = histos[r].data();
        HistoCell* const outer = histos[r + 1].data();
        for (int c = 0; c < columns; ++c) {
            count += cut(j.matrix, inner[c], outer[c], inner[c], 1);
        }
    }
    for (QList<HistoCell>& row : histos) {
        HistoCell* const cells = row.data();
        for (int c = 1; c < columns / 3; ++c) {
            count += cut(j.matrix, cells[c], cells[c - 1], cells[c - 1], 1);
        }
        for (int c = columns - 2; c >= 2 * columns / 3; --c) {
            count += cut(j.matrix, cells[c], cells[c + 1], cells[c + 1], 1);
        }
    }
    j.value = count;
}

/// The number of removed cells and the remaining ones.
Digest digestEdges(GridJob& j) {
    BitDigest digest;
    digest.add(static_cast<int>(j.value));
    digest.add(j.matrix.size());
    for (const QList<HistoCell>& row : std::as_const(j.histos.histoRows)) {
        for (const HistoCell& cell : row) {
            digest.add(cell.taken ? -1.0f : cell.mean);
        }
    }
    return resultOf(digest);
}

[[maybe_unused]] const bool isRegistered = [] {
    addOnGrid(
        "edges", "kx", fillMeans, [](GridJob& j) { j.value = j.histos.cutEdgeEffects(j.matrix, kThreshold); },
        digestEdges);
    addOnGrid("edges", "peer_plain_loop", fillMeans, cutRowByRow, digestEdges);
    return true;
}();

} // namespace

} // namespace kxbench
