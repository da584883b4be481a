#include "gridSupport.h"

#include <gtest/gtest.h>

using namespace KxMath;
using namespace testing_support;

namespace {

/// A grid of means, each with the matrix cell of its own position as its block.
KxMatrixWithHistos& fillCells(KxMatrixWithHistos& histos, const Heights& means) {
    histos.histoRows.clear();
    for (int r = 0; r < static_cast<int>(means.size()); ++r) {
        histos.histoRows.append(QList<HistoCell>());
        for (const float mean : means[static_cast<std::size_t>(r)]) {
            const int c = static_cast<int>(histos.histoRows.last().size());
            histos.histoRows.last().append({mean, c, c, r, r, false, false});
        }
    }
    return histos;
}

struct PlainCutting {
    QList<QList<HistoCell>> rows;
    KxMatrixCloud matrix;

    /// True when there was a cut.
    bool cut(int r, int c, int neighbourRow, int neighbourColumn, float threshold, bool marksNeighbour, int& result) {
        HistoCell& x = rows[r][c];
        HistoCell& y = rows[neighbourRow][neighbourColumn];
        if (!(x.mean - y.mean < threshold)) {
            return false;
        }
        x.mean = y.mean = kNaN;
        HistoCell& marked = marksNeighbour ? y : x;
        marked.visited = marked.taken = true;
        result += matrix.trim(x.firstColumn, x.column, x.firstRow, x.row);
        result += matrix.trim(y.firstColumn, y.column, y.firstRow, y.row);
        return true;
    }

    int run(float threshold) {
        const int n = static_cast<int>(rows.size());
        const int m = n > 0 ? static_cast<int>(rows[0].size()) : 0;
        int result = 0;
        for (int c = 0; c < m; ++c) {
            for (int r = 1; n / 3 > 1 && r < n / 3; ++r) {
                cut(r, c, r - 1, c, threshold, false, result);
            }
            for (int r = n - 2; r >= 2 * n / 3; --r) {
                result += cut(r, c, r + 1, c, threshold, false, result) ? 1 : 0;
            }
        }
        for (int r = 0; r < n; ++r) {
            for (int c = 1; c < m / 3; ++c) {
                result += cut(r, c, r, c - 1, threshold, true, result) ? 1 : 0;
            }
            for (int c = m - 2; c >= 2 * m / 3; --c) {
                result += cut(r, c, r, c + 1, threshold, true, result) ? 1 : 0;
            }
        }
        return result;
    }
};

TEST(EdgeCutting, CountsOneMoreExceptAtTheFirstRows) {
    struct Case {
        const char* desc;
        Heights means;
        int count;
        std::vector<QPoint> marked; // row, column
    };
    const auto column = [](const std::vector<float>& means) {
        Heights heights;
        for (const float mean : means) {
            heights.push_back({mean});
        }
        return heights;
    };
    const std::vector<Case> cases = {
        {"nothing", {}, 0, {}},
        {"first rows: the inner cell, no more", column({5, 1, 1, 1, 1, 1}), 2, {{1, 0}}},
        {"last rows: the inner cell", column({1, 1, 1, 1, 1, 5}), 3, {{4, 0}}},
        {"first rows of few", column({5, 1, 1, 1, 1}), 0, {}},
        {"last rows of few", column({1, 1, 1, 1, 5}), 3, {{3, 0}}},
        {"first columns: the outer cell", {{5, 1, 1, 1, 1, 1}}, 3, {{0, 0}}},
        {"last columns: the outer cell", {{1, 1, 1, 1, 1, 5}}, 3, {{0, 5}}},
        {"inner thirds", {{1, 1, 9, 1, 1, 1}}, 0, {}},
        {"rising to the inside", {{1, 5, 5, 5, 5, 1}}, 0, {}},
        {"no number", {{kNaN, 1, 1, 1, kNaN, 5}}, 0, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        KxMatrixCloud matrix;
        fill(matrix, c.means);
        KxMatrixWithHistos histos;
        EXPECT_EQ(fillCells(histos, c.means).cutEdgeEffects(matrix, -kInf), 0);
        EXPECT_EQ(histos.cutEdgeEffects(matrix, kNaN), 0);
        EXPECT_EQ(histos.cutEdgeEffects(matrix, -3.0f), c.count);
        std::vector<QPoint> marked;
        for (const QList<HistoCell>& row : std::as_const(histos.histoRows)) {
            for (const HistoCell& cell : row) {
                if (cell.visited && cell.taken && std::isnan(cell.mean)) {
                    marked.push_back(QPoint(cell.row, cell.column));
                }
            }
        }
        EXPECT_EQ(marked, c.marked);
    }
}

TEST(EdgeCutting, EqualsThePlainDefinition) {
    Nasty nasty(48);
    int cuts = 0;
    for (int round = 0; round < 2000; ++round) {
        nasty.nextCase();
        const Heights heights = nastyHeights(nasty, 25);
        PlainCutting plain;
        fill(plain.matrix, heights);
        KxMatrixCloud matrix;
        fill(matrix, heights);
        KxMatrixWithHistos histos;
        histos.calcFromMatrixCloud(matrix, nasty.pick(std::array{0, 1, 2, 4, -2}), 0, nullptr, nullptr);
        plain.rows = histos.histoRows;
        const float threshold = nasty.pick(std::array{-0.3f, -2.0f, 0.0f, 1.0f, kInf});
        const int expected = plain.run(threshold);
        ASSERT_EQ(histos.cutEdgeEffects(matrix, threshold), expected) << "round " << round;
        ASSERT_EQ(exact(histos.histoRows), exact(plain.rows));
        ASSERT_EQ(exact(heightsOf(matrix)), exact(heightsOf(plain.matrix)));
        cuts += expected > 0 ? 1 : 0;
    }
    EXPECT_GT(cuts, 300);
}

} // namespace
