#include "gridSupport.h"

#include <gtest/gtest.h>

using namespace KxMath;
using namespace testing_support;

namespace {

static_assert(!std::is_copy_constructible_v<KxMatrixCloud>, "both would release the cells");

TEST(MatrixCloud, StartsAndEndsWithoutAGrid) {
    KxMatrixCloud matrix;
    SpaceCloud cloud;
    const auto expectNone = [&] {
        EXPECT_EQ(matrix.cells, nullptr);
        EXPECT_EQ(matrix.columns, -1);
        EXPECT_EQ(matrix.rows, -1);
        EXPECT_TRUE(std::isnan(matrix.step));
        EXPECT_EQ(matrix.size(), 0);
        EXPECT_EQ(matrix.trim(1, 2, 3.0f, 4.0f, 5, 6), 0);
        matrix.reflect();
        matrix.clearEdgeEffect();
        EXPECT_EQ(matrix.toPointCloud(cloud), 0);
    };
    expectNone();
    ASSERT_TRUE(matrix.initMatrix(3, 2, 0.5f, 1, 2, 3, 4, 5, 6));
    EXPECT_EQ(matrix.columns, 3);
    EXPECT_EQ(matrix.rows, 2);
    EXPECT_EQ(matrix.step, 0.5f);
    matrix.clear();
    expectNone();
    EXPECT_EQ(exact(QList<float>{matrix.minX, matrix.maxX, matrix.minY, matrix.maxY, matrix.minZ, matrix.maxZ}),
              exact(QList<float>{1, 2, 3, 4, 5, 6}));
    for (const int side : {0, 1}) { // grids without columns or without rows
        EXPECT_TRUE(matrix.initMatrix(side, 1 - side, 1, 0, 0, 0, 0, 0, 0));
        EXPECT_EQ(matrix.size() + matrix.toPointCloud(cloud), 0);
        matrix.clearEdgeEffect();
    }
}

TEST(MatrixCloud, AssignmentSharesAndAnEmptyMatrixHandsOver) {
    KxMatrixCloud source;
    fill(source, {{1, 2}});
    KxMatrixCloud target;
    fill(target, {{9}});
    float** const cells = source.cells;
    target.clear();
    target = source;
    EXPECT_EQ(target.cells, source.cells);
    source.cells[0][1] = 5;
    EXPECT_EQ(target.cells[0][1], 5.0f);
    source = KxMatrixCloud();
    EXPECT_EQ(source.rows, -1);
    EXPECT_EQ(target.cells, cells);
    EXPECT_EQ(target.size(), 2);
}

TEST(MatrixCloud, TrimsOutsideABandAndInsideARectangle) {
    const Heights start{{1, 2, 3}, {4, kNaN, 6}};
    struct Case {
        const char* desc;
        int firstColumn, lastColumn;
        float minValue, maxValue;
        int firstRow, lastRow;
        Heights left;
        int count;
    };
    const std::vector<Case> cases = {
        {"no limits", 0, 0, kNaN, kNaN, 0, 0, start, 0},
        {"limits below 0", -1, -2, kNaN, kNaN, -1, -2, start, 0},
        {"columns", 1, 1, kNaN, kNaN, 0, 0, {{kNaN, 2, kNaN}, {kNaN, kNaN, kNaN}}, 4},
        {"heights, inclusive", 0, 0, 2, 4, 0, 0, {{kNaN, 2, 3}, {4, kNaN, kNaN}}, 2},
        {"first row", 0, 0, kNaN, kNaN, 1, 0, {{kNaN, kNaN, kNaN}, {4, kNaN, 6}}, 3},
        {"last row and column", 0, 1, kNaN, kNaN, 0, 1, {{1, 2, kNaN}, {4, kNaN, kNaN}}, 2},
        {"beyond all", 7, 0, kNaN, kNaN, 0, 0, {{kNaN, kNaN, kNaN}, {kNaN, kNaN, kNaN}}, 5},
    };
    KxMatrixCloud matrix;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        fill(matrix, start);
        EXPECT_EQ(matrix.trim(c.firstColumn, c.lastColumn, c.minValue, c.maxValue, c.firstRow, c.lastRow), c.count);
        EXPECT_EQ(exact(heightsOf(matrix)), exact(c.left));
    }
    fill(matrix, start);
    EXPECT_EQ(matrix.trim(1, 1, 0, 0), 1);
    EXPECT_EQ(matrix.trim(1, 2, 0, 1), 4); // empty cells count too
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{1, kNaN, kNaN}, {4, kNaN, kNaN}}));
    EXPECT_EQ(matrix.trim(0, 2, 1, 0) + matrix.trim(2, 0, 0, 1), 0);
    matrix.reflect();
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{-1, kNaN, kNaN}, {-4, kNaN, kNaN}}));
}

TEST(MatrixCloud, PointsAreInUnitsOfThePitchFromZero) {
    KxMatrixCloud matrix;
    fill(matrix, {{1, kNaN, 3}, {4, 5, 6}}, 0.5f);
    matrix.minX = 100;
    SpaceCloud cloud;
    cloud.points = {{9, 9, 9}};
    EXPECT_EQ(matrix.toPointCloud(cloud), 5);
    const QList<KxPointXYZ> all{{0, 1, 0}, {1, 3, 0}, {0, 4, 0.5f}, {0.5f, 5, 0.5f}, {1, 6, 0.5f}};
    EXPECT_EQ(exact(cloud.points), exact(all));
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 1, 0, 2, 2, false), 8); // appended
    EXPECT_EQ(matrix.size(), 5);
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 1, 0, 2, 2, true), 11);
    EXPECT_EQ(exact(cloud.points.mid(8)), exact(QList<KxPointXYZ>{all[1], all[3], all[4]}));
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{1, kNaN, kNaN}, {4, kNaN, kNaN}}));
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 0, 0, -1, 5, true), 11);
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 0, 0, 5, -1, true), 11);
}

Heights clearedPlainly(Heights heights, int columns) {
    const int rows = static_cast<int>(heights.size());
    for (int c = 0; c < columns; ++c) {
        const auto cell = [&](int r) -> float& {
            return heights[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
        };
        float best = 0;
        int highRow = 0;
        for (int r = rows / 5; r <= rows - 1; ++r) {
            if (best <= cell(r)) {
                highRow = r;
                best = cell(r);
            }
        }
        float low = best;
        int lowRow = 0;
        for (int r = 0; r <= highRow - 1; ++r) {
            if (low >= cell(r)) {
                lowRow = r;
                low = cell(r);
            }
        }
        low = best;
        int endRow = columns;
        for (int r = rows - 1; r >= highRow + 1; --r) {
            if (low >= cell(r)) {
                endRow = r;
                low = cell(r);
            }
        }
        for (int r = 0; r < rows; ++r) {
            if (r < lowRow || r > endRow) {
                cell(r) = kNaN;
            }
        }
    }
    return heights;
}

TEST(MatrixCloud, EdgeClearingKeepsTheRowsBetweenTheLowPoints) {
    KxMatrixCloud matrix;
    fill(matrix, {{3}, {1}, {1}, {4}, {8}, {8}, {2}, {2}, {5}});
    matrix.clearEdgeEffect();
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{kNaN}, {kNaN}, {1}, {4}, {8}, {8}, {2}, {kNaN}, {kNaN}}));
    // The peak is in the last row: the rows beyond the number of columns go, the peak with them.
    fill(matrix, {{1, 1}, {2, 2}, {3, 3}, {4, 4}});
    matrix.clearEdgeEffect();
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{1, 1}, {2, 2}, {3, 3}, {kNaN, kNaN}}));

    Nasty nasty(44);
    for (int round = 0; round < 3000; ++round) {
        nasty.nextCase();
        const Heights heights = nastyHeights(nasty, 25);
        fill(matrix, heights);
        matrix.clearEdgeEffect();
        ASSERT_EQ(exact(heightsOf(matrix)), exact(clearedPlainly(heights, matrix.columns))) << "round " << round;
    }
}

} // namespace
