#include "gridSupport.h"

using namespace testing_support;

namespace {

static_assert(!std::is_copy_constructible_v<KxMatrixCloud>, "both would release the cells");

TEST(MatrixCloud, StartsAndEndsWithoutAGrid) {
    KxMatrixCloud matrix;
    SpaceCloud cloud;
    for (const bool isCleared : {false, true}) {
        EXPECT_EQ(matrix.cells, nullptr);
        EXPECT_EXACT(exact(matrix.columns, matrix.rows, matrix.step), exact(-1, -1, kNaN));
        EXPECT_EXACT(exactRange(matrix), isCleared ? exact(1, 2, 3, 4, 5, 6) : ExactList(6, exact(kNaN)));
        EXPECT_EQ(matrix.size() + matrix.trim(1, 2, 3.0f, 4.0f, 5, 6) + matrix.toPointCloud(cloud), 0);
        matrix.reflect();
        matrix.clearEdgeEffect();
        ASSERT_TRUE(matrix.initMatrix(3, 2, 0.5f, 1, 2, 3, 4, 5, 6));
        EXPECT_EXACT(exact(matrix.columns, matrix.rows, matrix.step), exact(3, 2, 0.5f));
        matrix.clear();
    }
    for (const int side : {0, 1}) { // grids without columns or without rows
        EXPECT_TRUE(matrix.initMatrix(side, 1 - side, 1, 0, 0, 0, 0, 0, 0));
        EXPECT_EQ(matrix.size() + matrix.toPointCloud(cloud), 0);
        matrix.clearEdgeEffect();
    }
}

TEST(MatrixCloud, AssignmentDeliberatelySharesAndAnEmptyMatrixHandsOver) {
    KxMatrixCloud source, target;
    fill(source, {{1, 2}});
    float** const cells = source.cells;
    target = source;
    EXPECT_EQ(target.cells, cells);
    source = KxMatrixCloud();
    EXPECT_EQ(source.rows, -1);
    EXPECT_TRUE(target.cells == cells && target.size() == 2);
}

TEST(MatrixCloud, TrimsInsideARectangleAndReflects) {
    KxMatrixCloud matrix;
    fill(matrix, {{1, 2, 3}, {4, kNaN, 6}});
    EXPECT_EQ(matrix.trim(1, 1, 0, 0), 1);
    EXPECT_EQ(matrix.trim(1, 2, 0, 1), 4); // empty cells count too
    EXPECT_EQ(matrix.trim(0, 2, 1, 0) + matrix.trim(2, 0, 0, 1), 0);
    matrix.reflect();
    EXPECT_EXACT(heightsOf(matrix), exact(Heights{{-1, kNaN, kNaN}, {-4, kNaN, kNaN}}));
}

TEST(MatrixCloud, ExtractsPointsInUnitsOfThePitch) {
    const Heights heights{{1, kNaN, 3}, {4, 5, 6}};
    KxMatrixCloud matrix;
    fill(matrix, heights, 0.5f);
    SpaceCloud cloud;
    cloud.points = {{9, 9, 9}};
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 1, 0, 2, 2, false), 4); // appended
    EXPECT_EXACT(heightsOf(matrix), heights);
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 1, 0, 2, 2, true), 7);
    EXPECT_EXACT(cloud.points.mid(4), exact(SpacePoints{{1, 3, 0}, {0.5f, 5, 0.5f}, {1, 6, 0.5f}}));
    EXPECT_EXACT(heightsOf(matrix), exact(Heights{{1, kNaN, kNaN}, {4, kNaN, kNaN}}));
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 0, 0, 0, 2, true), 7);
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 0, 0, 5, -1, true), 7);
}

TEST(MatrixCloud, CountingTrimmingAndPointsEqualThePlainDefinition) {
    forNasty(48, 2000, [&](Nasty& nasty) {
        Heights heights = nastyHeights(nasty, 70);
        KxMatrixCloud matrix;
        fill(matrix, heights, 0.1f);
        matrix.minX = 100; // points begin at 0 all the same
        const auto bound = [&] { return nasty.pick(std::array{0, 0, -1, 1, 5, 20, 40, INT_MAX}); };
        const int firstColumn = bound(), lastColumn = bound(), firstRow = bound(), lastRow = bound();
        const float low = nasty.value(), high = nasty.value();
        int count = 0;
        SpaceCloud cloud, expected;
        cloud.points = {{9, 9, 9}}; // replaced
        for (int r = 0; r < matrix.rows; ++r) {
            for (int c = 0; c < matrix.columns; ++c) {
                float& h = heights[r][c];
                const bool isOutside = (firstColumn > 0 && c < firstColumn) || (lastColumn > 0 && c > lastColumn) ||
                                       (firstRow > 0 && r < firstRow) || (lastRow > 0 && r > lastRow) || h < low ||
                                       h > high;
                if (isOutside && !std::isnan(h)) {
                    h = kNaN;
                    ++count;
                }
                if (!std::isnan(h)) {
                    expected.points.append(KxPointXYZ(static_cast<float>(c) * 0.1f, h, static_cast<float>(r) * 0.1f));
                }
            }
        }
        ASSERT_EQ(matrix.trim(firstColumn, lastColumn, low, high, firstRow, lastRow), count);
        ASSERT_EXACT(heightsOf(matrix), heights);
        ASSERT_EQ(matrix.size(), expected.size());
        ASSERT_EQ(matrix.toPointCloud(cloud), expected.size());
        ASSERT_EXACT(cloud.points, expected.points);
    });
}

Heights clearedPlainly(Heights heights, int columns) {
    const qsizetype rows = heights.size();
    for (int c = 0; c < columns; ++c) {
        float best = 0;
        qsizetype highRow = 0, lowRow = 0, endRow = columns;
        const auto note = [&](bool isBetter, qsizetype r, qsizetype& row, float& value) {
            if (isBetter) {
                row = r;
                value = heights[r][c];
            }
        };
        for (qsizetype r = rows / 5; r <= rows - 1; ++r) {
            note(best <= heights[r][c], r, highRow, best);
        }
        float low = best;
        for (qsizetype r = 0; r <= highRow - 1; ++r) {
            note(low >= heights[r][c], r, lowRow, low);
        }
        low = best;
        for (qsizetype r = rows - 1; r >= highRow + 1; --r) {
            note(low >= heights[r][c], r, endRow, low);
        }
        for (qsizetype r = 0; r < rows; ++r) {
            heights[r][c] = r < lowRow || r > endRow ? kNaN : heights[r][c];
        }
    }
    return heights;
}

TEST(MatrixCloud, EdgeClearingEqualsThePlainDefinition) {
    KxMatrixCloud matrix;
    forNasty(44, 3000, [&](Nasty& nasty) {
        const Heights heights = nastyHeights(nasty, 25);
        fill(matrix, heights);
        matrix.clearEdgeEffect();
        ASSERT_EXACT(heightsOf(matrix), clearedPlainly(heights, matrix.columns));
    });
}

} // namespace
