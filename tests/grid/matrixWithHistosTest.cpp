#include "gridSupport.h"

#include <gtest/gtest.h>

#include <climits>

using namespace KxMath;
using namespace testing_support;

namespace {

QList<QList<HistoCell>> meansPlainly(const Heights& heights, int blockSize, float& minMean, float& maxMean) {
    QList<QList<HistoCell>> rows;
    for (int r = 0; r < static_cast<int>(heights.size()); ++r) {
        rows.append(QList<HistoCell>());
        for (int c = 0; c < static_cast<int>(heights[0].size()); ++c) {
            const int firstRow = std::max(0, r - blockSize);
            const int firstColumn = std::max(0, c - blockSize);
            float sum = 0;
            int count = 0;
            for (int i = firstRow; i <= r - 1; ++i) {
                for (int j = firstColumn; j <= c - 1; ++j) {
                    const float height = heights[static_cast<std::size_t>(i)][static_cast<std::size_t>(j)];
                    if (!std::isnan(height)) {
                        sum += height;
                        ++count;
                    }
                }
            }
            const float mean = count == 0 ? 0.0f : sum / static_cast<float>(count);
            rows.last().append({mean, firstColumn, c, firstRow, r, false, false});
            if (std::isnan(maxMean) || maxMean < mean) {
                maxMean = mean;
            }
            if (std::isnan(minMean) || minMean > mean) {
                minMean = mean;
            }
        }
    }
    return rows;
}

TEST(BlockMeans, EqualThePlainDefinition) {
    Nasty nasty(45);
    for (int round = 0; round < 2000; ++round) {
        nasty.nextCase();
        const Heights heights = nastyHeights(nasty, 30);
        const int blockSize = nasty.pick(std::array{-3, 0, 1, 2, 3, 5, 8, 100000});
        KxMatrixCloud matrix;
        fill(matrix, heights);
        float minMean = kNaN;
        float maxMean = kNaN;
        const QList<QList<HistoCell>> expected = meansPlainly(heights, blockSize, minMean, maxMean);
        KxMatrixWithHistos histos;
        float minOut = 7;
        float maxOut = 7;
        ASSERT_EQ(histos.calcFromMatrixCloud(matrix, blockSize, 9, &minOut, &maxOut), expected.size());
        ASSERT_EQ(exact(histos.histoRows), exact(expected)) << "round " << round << " block " << blockSize;
        ASSERT_EQ(exact(QList<float>{histos.minMean, histos.maxMean, minOut, maxOut}),
                  exact(QList<float>{minMean, maxMean, minMean, maxMean}));
    }
}

TEST(BlockMeans, LaterRowsAreAppendedAndMayBeShorter) {
    KxMatrixCloud matrix;
    fill(matrix, {{1, 2, 3}, {5, 6, 7}});
    KxMatrixWithHistos histos;
    EXPECT_EQ(histos.calcFromMatrixCloud(matrix, 1, 0, nullptr, nullptr), 2);
    EXPECT_EQ(histos.maxMean, 2.0f);
    fill(matrix, {{-1}, {4}});
    EXPECT_EQ(histos.calcFromMatrixCloud(matrix, INT_MIN, 0, nullptr, nullptr), 4);
    EXPECT_EQ(histos.maxMean, 0.0f);
    SpaceCloud cloud;
    cloud.points = {{9, 9, 9}};
    histos.histoRows[0][2].mean = kNaN;
    histos.histoRows[3][0].mean = -8;
    EXPECT_EQ(histos.toPointCloud(cloud, 0.5f), 3); // neither NaN nor the means of empty blocks
    EXPECT_EQ(exact(cloud.points), exact(QList<KxPointXYZ>{{0.5f, 1, 0.5f}, {1, 2, 0.5f}, {0, -8, 1.5f}}));
    QList<SpaceCloud*> seeds;
    EXPECT_EQ(histos.extractSeeds(matrix, &seeds, 0, 0, 1, 1, 1, kNaN), 0);
    EXPECT_EQ(histos.cutEdgeEffects(matrix, -kInf), 0);
}

TEST(BlockMeans, CopiesShareThePendingListUntilTheyHaveTheirOwn) {
    KxMatrixCloud matrix;
    fill(matrix, Heights(4, std::vector<float>(4, 5.0f)));
    KxMatrixWithHistos original;
    original.calcFromMatrixCloud(matrix, 1, 0, nullptr, nullptr);
    const ExactList before = exact(original.histoRows);

    KxMatrixWithHistos copy(original);
    EXPECT_EQ(copy.pendingSeeds, original.pendingSeeds);
    copy.pendingSeeds = new QList<QPoint>;
    KxMatrixWithHistos target;
    delete target.pendingSeeds;
    target = original;
    EXPECT_EQ(target.pendingSeeds, original.pendingSeeds);
    target.pendingSeeds = new QList<QPoint>;

    EXPECT_EQ(copy.histoRows.constData(), original.histoRows.constData());
    EXPECT_EQ(target.maxMean, 5.0f);
    SpaceCloud cloud;
    EXPECT_EQ(copy.gatherSeed(matrix, cloud, 1, 1, 1, 1, kNaN), 9);
    EXPECT_EQ(exact(original.histoRows), before);
    EXPECT_EQ(exact(target.histoRows), before);
}

} // namespace
