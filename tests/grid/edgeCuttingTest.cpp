#include "gridSupport.h"

using namespace testing_support;

namespace {

struct PlainCutting {
    QList<QList<HistoCell>> rows;
    KxMatrixCloud matrix;
    float threshold = 0;
    int result = 0;

    void cut(HistoCell& inner, HistoCell& outer, HistoCell& marked, int extra) {
        if (!(inner.mean - outer.mean < threshold)) {
            return;
        }
        inner.mean = outer.mean = kNaN;
        marked.visited = marked.taken = true;
        for (const HistoCell* const cell : {&inner, &outer}) {
            result += matrix.trim(cell->firstColumn, cell->column, cell->firstRow, cell->row);
        }
        result += extra;
    }

    void run() {
        const qsizetype n = rows.size();
        const qsizetype m = n > 0 ? rows[0].size() : 0;
        for (qsizetype c = 0; c < m; ++c) {
            for (qsizetype r = 1; r < n / 3; ++r) {
                cut(rows[r][c], rows[r - 1][c], rows[r][c], 0); // deliberately counts no more than the cells
            }
            for (qsizetype r = n - 2; r >= 2 * n / 3; --r) {
                cut(rows[r][c], rows[r + 1][c], rows[r][c], 1);
            }
        }
        for (QList<HistoCell>& row : rows) { // deliberately marks the outer cell
            for (qsizetype c = 1; c < m / 3; ++c) {
                cut(row[c], row[c - 1], row[c - 1], 1);
            }
            for (qsizetype c = m - 2; c >= 2 * m / 3; --c) {
                cut(row[c], row[c + 1], row[c + 1], 1);
            }
        }
    }
};

TEST(EdgeCutting, EqualsThePlainDefinition) {
    int cuts = 0;
    forNasty(48, 2000, [&](Nasty& nasty) {
        const Heights heights = nastyHeights(nasty, 25);
        PlainCutting plain;
        fill(plain.matrix, heights);
        KxMatrixCloud matrix;
        fill(matrix, heights);
        KxMatrixWithHistos histos;
        histos.calcFromMatrixCloud(matrix, nasty.pick(std::array{0, 1, 2, 4, -2}), 0, nullptr, nullptr);
        plain.rows = histos.histoRows;
        plain.threshold = nasty.pick(std::array{-0.3f, -2.0f, 0.0f, 1.0f, kInf, kNaN, -kInf});
        plain.run();
        ASSERT_EQ(histos.cutEdgeEffects(matrix, plain.threshold), plain.result);
        ASSERT_EXACT(histos.histoRows, plain.rows);
        ASSERT_EXACT(heightsOf(matrix), heightsOf(plain.matrix));
        cuts += plain.result > 0 ? 1 : 0;
    });
    EXPECT_GT(cuts, 300);
}

} // namespace
