#include "gridSupport.h"

using namespace testing_support;

namespace {

QList<QList<HistoCell>> meansPlainly(const Heights& heights, int blockSize, float& minMean, float& maxMean) {
    QList<QList<HistoCell>> rows(heights.size());
    for (int r = 0; r < heights.size(); ++r) {
        for (int c = 0; c < heights[0].size(); ++c) {
            const int firstRow = std::max(0, r - blockSize);
            const int firstColumn = std::max(0, c - blockSize);
            float sum = 0;
            int count = 0;
            for (int i = firstRow; i <= r - 1; ++i) {
                for (int j = firstColumn; j <= c - 1; ++j) {
                    if (!std::isnan(heights[i][j])) {
                        sum += heights[i][j];
                        ++count;
                    }
                }
            }
            const float mean = count == 0 ? 0.0f : sum / static_cast<float>(count);
            rows[r].append({mean, firstColumn, c, firstRow, r, false, false});
            maxMean = std::isnan(maxMean) || maxMean < mean ? mean : maxMean;
            minMean = std::isnan(minMean) || minMean > mean ? mean : minMean;
        }
    }
    return rows;
}

TEST(BlockMeans, EqualThePlainDefinition) {
    forNasty(45, 2000, [&](Nasty& nasty) {
        const Heights heights = nastyHeights(nasty, 30);
        const int blockSize = nasty.pick(std::array{-3, 0, 1, 2, 3, 5, 8, 100000});
        KxMatrixCloud matrix;
        fill(matrix, heights);
        float low = kNaN, high = kNaN, minOut = 7, maxOut = 7;
        const QList<QList<HistoCell>> expected = meansPlainly(heights, blockSize, low, high);
        KxMatrixWithHistos histos;
        ASSERT_EQ(histos.calcFromMatrixCloud(matrix, blockSize, 9, &minOut, &maxOut), expected.size());
        ASSERT_EXACT(histos.histoRows, expected) << " block " << blockSize;
        ASSERT_EXACT(exact(histos.minMean, histos.maxMean, minOut, maxOut), exact(low, high, low, high));
    });
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
    EXPECT_EXACT(cloud.points, exact(QList<KxPointXYZ>{{0.5f, 1, 0.5f}, {1, 2, 0.5f}, {0, -8, 1.5f}}));
    QList<SpaceCloud*> seeds;
    EXPECT_EQ(histos.extractSeeds(matrix, &seeds, 0, 0, 1, 1, 1, kNaN), 0);
    EXPECT_EQ(histos.cutEdgeEffects(matrix, -kInf), 0);
}

TEST(BlockMeans, CopiesDeliberatelyShareThePendingList) {
    KxMatrixCloud matrix;
    fill(matrix, Heights(4, QList<float>(4, 5.0f)));
    KxMatrixWithHistos original, target;
    original.calcFromMatrixCloud(matrix, 1, 0, nullptr, nullptr);
    const ExactList before = exact(original.histoRows);
    KxMatrixWithHistos copy(original);
    delete target.pendingSeeds;
    target = original;
    for (KxMatrixWithHistos* const other : {&copy, &target}) {
        EXPECT_EQ(other->pendingSeeds, original.pendingSeeds);
        other->pendingSeeds = new QList<QPoint>; // independent from here on
    }
    EXPECT_EQ(copy.histoRows.constData(), original.histoRows.constData());
    EXPECT_EQ(target.maxMean, 5.0f);
    SpaceCloud cloud;
    EXPECT_EQ(copy.gatherSeed(matrix, cloud, 1, 1, 1, 1, kNaN), 9);
    EXPECT_TRUE(exact(original.histoRows) == before && exact(target.histoRows) == before);
}

} // namespace
