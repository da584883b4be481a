#include "gridSupport.h"

#include <gtest/gtest.h>

#include <climits>

using namespace KxMath;
using namespace testing_support;

namespace {

static_assert(!std::is_copy_constructible_v<KxMatrixCloud>, "both would release the cells");

TEST(MatrixCloud, StartsAndEndsWithoutAGrid) {
    KxMatrixCloud matrix;
    SpaceCloud cloud;
    for (const bool isCleared : {false, true}) {
        EXPECT_EQ(matrix.cells, nullptr);
        EXPECT_EQ(exact(matrix.columns, matrix.rows, matrix.step), exact(-1, -1, kNaN));
        EXPECT_EQ(exactRange(matrix), isCleared ? exact(1, 2, 3, 4, 5, 6) : ExactList(6, exact(kNaN)));
        EXPECT_EQ(matrix.size() + matrix.trim(1, 2, 3.0f, 4.0f, 5, 6) + matrix.toPointCloud(cloud), 0);
        matrix.reflect();
        matrix.clearEdgeEffect();
        ASSERT_TRUE(matrix.initMatrix(3, 2, 0.5f, 1, 2, 3, 4, 5, 6));
        EXPECT_EQ(exact(matrix.columns, matrix.rows, matrix.step), exact(3, 2, 0.5f));
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
    EXPECT_EQ(target.cells, cells);
    EXPECT_EQ(target.size(), 2);
}

TEST(MatrixCloud, TrimsOutsideABandAndInsideARectangle) {
    const Heights start{{1, 2, 3}, {4, kNaN, 6}};
    const struct {
        int firstColumn, lastColumn;
        float minValue, maxValue;
        int firstRow, lastRow;
        Heights left;
        int count;
    } kCases[] = {
        {-1, -2, kNaN, kNaN, 0, -2, start, 0}, // no limits
        {1, 1, kNaN, kNaN, 0, 0, {{kNaN, 2, kNaN}, {kNaN, kNaN, kNaN}}, 4},
        {0, 0, 2, 4, 0, 0, {{kNaN, 2, 3}, {4, kNaN, kNaN}}, 2}, // inclusive
        {0, 0, kNaN, kNaN, 1, 0, {{kNaN, kNaN, kNaN}, {4, kNaN, 6}}, 3},
        {0, 1, kNaN, kNaN, 0, 1, {{1, 2, kNaN}, {4, kNaN, kNaN}}, 2},
        {7, 0, kNaN, kNaN, 0, 0, {{kNaN, kNaN, kNaN}, {kNaN, kNaN, kNaN}}, 5},
    };
    KxMatrixCloud matrix;
    for (const auto& c : kCases) {
        fill(matrix, start);
        EXPECT_EQ(matrix.trim(c.firstColumn, c.lastColumn, c.minValue, c.maxValue, c.firstRow, c.lastRow), c.count);
        EXPECT_EQ(exact(heightsOf(matrix)), exact(c.left));
    }
    fill(matrix, start);
    EXPECT_EQ(matrix.trim(1, 1, 0, 0), 1);
    EXPECT_EQ(matrix.trim(1, 2, 0, 1), 4); // empty cells count too
    EXPECT_EQ(matrix.trim(0, 2, 1, 0) + matrix.trim(2, 0, 0, 1), 0);
    matrix.reflect();
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{-1, kNaN, kNaN}, {-4, kNaN, kNaN}}));
}

TEST(MatrixCloud, PointsAreInUnitsOfThePitchFromZero) {
    const Heights heights{{1, kNaN, 3}, {4, 5, 6}};
    KxMatrixCloud matrix;
    fill(matrix, heights, 0.5f);
    matrix.minX = 100;
    SpaceCloud cloud;
    cloud.points = {{9, 9, 9}};
    EXPECT_EQ(matrix.toPointCloud(cloud), 5);
    const QList<KxPointXYZ> all{{0, 1, 0}, {1, 3, 0}, {0, 4, 0.5f}, {0.5f, 5, 0.5f}, {1, 6, 0.5f}};
    EXPECT_EQ(exact(cloud.points), exact(all));
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 1, 0, 2, 2, false), 8); // appended
    EXPECT_EQ(exact(heightsOf(matrix)), exact(heights));
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 1, 0, 2, 2, true), 11);
    EXPECT_EQ(exact(cloud.points.mid(8)), exact(QList<KxPointXYZ>{all[1], all[3], all[4]}));
    EXPECT_EQ(exact(heightsOf(matrix)), exact(Heights{{1, kNaN, kNaN}, {4, kNaN, kNaN}}));
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 0, 0, 0, 2, true), 11);
    EXPECT_EQ(matrix.extractToPointCloud(cloud, 0, 0, 5, -1, true), 11);
    EXPECT_EQ(matrix.size(), 2);
}

TEST(MatrixCloud, CountingTrimmingAndPointsEqualThePlainDefinition) {
    Nasty nasty(48);
    for (int round = 0; round < 2000; ++round) {
        nasty.nextCase();
        Heights heights = nastyHeights(nasty, 70);
        KxMatrixCloud matrix;
        fill(matrix, heights, 0.1f);
        const auto bound = [&] { return nasty.pick(std::array{0, 0, -1, 1, 5, 20, 40, INT_MAX}); };
        const int firstColumn = bound(), lastColumn = bound(), firstRow = bound(), lastRow = bound();
        const float low = nasty.value(), high = nasty.value();
        int count = 0;
        SpaceCloud cloud, expected;
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
        ASSERT_EQ(matrix.trim(firstColumn, lastColumn, low, high, firstRow, lastRow), count) << "round " << round;
        ASSERT_EQ(exact(heightsOf(matrix)), exact(heights)) << "round " << round;
        ASSERT_EQ(matrix.size(), expected.size());
        ASSERT_EQ(matrix.toPointCloud(cloud), expected.size());
        ASSERT_EQ(exact(cloud.points), exact(expected.points)) << "round " << round;
    }
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
