// Clearing the ends of the columns of a height map.
#include "KxMath/KxMatrixCloud.h"

#include "rounding/bounds.h"

namespace KxMath {

namespace {

/// The rows of a column that stay, both included.
struct KeptRows {
    int first;
    int last;
};

KeptRows findKeptRows(const KxMatrixCloud& matrix, int column) {
    const auto cell = [&](int row) { return matrix.cells[row][column]; };
    float best = 0.0f;
    int highRow = 0;
    for (int r = matrix.rows / 5; r < matrix.rows; ++r) {
        if (best <= cell(r)) { // NaN: false
            highRow = r;
            best = cell(r);
        }
    }

    // Deliberately the number of columns where no cell behind the highest one is as low.
    KeptRows kept{0, matrix.columns};
    float low = best;
    for (int r = 0; r < highRow; ++r) {
        if (low >= cell(r)) { // NaN: false
            kept.first = r;
            low = cell(r);
        }
    }
    low = best;
    for (int r = matrix.rows - 1; r > highRow; --r) {
        if (low >= cell(r)) { // NaN: false
            kept.last = r;
            low = cell(r);
        }
    }
    return kept;
}

} // namespace

void KxMatrixCloud::clearEdgeEffect() {
    for (int c = 0; c < columns; ++c) {
        const KeptRows kept = findKeptRows(*this, c);
        for (int r = 0; r < rows; ++r) {
            if (r < kept.first || r > kept.last) {
                cells[r][c] = detail::kNaN;
            }
        }
    }
}

} // namespace KxMath
