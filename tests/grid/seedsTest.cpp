#include "gridSupport.h"

using namespace testing_support;

namespace {

/// Gives access to the growth itself.
struct Growing : KxMatrixWithHistos {
    using KxMatrixWithHistos::recFindNeighbours;
};

/// The search as its header describes it: recursive, pass by pass over all cells, on its own map.
struct PlainSearch {
    QList<QList<HistoCell>> rows;
    QList<QPoint> pending;
    KxMatrixCloud matrix;

    void grow(QList<QPoint>& region, int row, int column, float refMean, float maxStep, float maxDrop, int depth) {
        if (rows[row][column].visited) {
            return;
        }
        const int count = depth + 1;
        if (count > 201) {
            if (!pending.contains(QPoint(row, column))) {
                pending.append(QPoint(row, column));
            }
            return;
        }
        region.append(QPoint(row, column));
        rows[row][column].visited = true;
        const float mean = rows[row][column].mean;
        const bool isDescending = !std::isnan(maxDrop) && refMean - mean >= maxDrop;
        for (const auto& [dr, dc] : {std::pair(0, -1), std::pair(0, 1), std::pair(-1, 0), std::pair(1, 0)}) {
            const int r = row + dr, c = column + dc;
            if (r < 0 || r >= rows.size() || c < 0 || c >= rows[r].size() || rows[r][c].visited) {
                continue;
            }
            const float d = mean - rows[r][c].mean;
            if (isDescending ? 0 < d && d < maxStep : std::fabs(d) < maxStep) {
                grow(region, r, c, refMean, maxStep, maxDrop, count);
            }
        }
    }

    int gather(SpaceCloud& cloud, int row, int column, float maxStep, int minCount, float maxDrop) {
        pending = {QPoint(row, column)};
        const float refMean = rows[row][column].mean;
        QList<QPoint> region;
        while (!pending.isEmpty()) {
            const QPoint last = pending.takeLast();
            grow(region, last.x(), last.y(), refMean, maxStep, maxDrop, 0);
        }
        if (region.size() < minCount) {
            return 0;
        }
        for (const QPoint& at : region) {
            HistoCell& cell = rows[at.x()][at.y()];
            if (!cell.taken) {
                matrix.extractToPointCloud(cloud, cell.firstColumn, cell.firstRow, cell.column - cell.firstColumn,
                                           cell.row - cell.firstRow, true);
                cell.taken = true;
            }
        }
        return cloud.size();
    }

    ExactList extract(float level, float endLevel, float levelStep, float tolerance, int minCount, float maxDrop) {
        ExactList all;
        for (bool isFirst = true; isFirst || endLevel <= level; isFirst = false) {
            for (int r = 0; r < rows.size(); ++r) {
                for (int c = 0; c < rows[0].size(); ++c) {
                    if (std::fabs(rows[r][c].mean - level) < tolerance && !rows[r][c].visited) {
                        SpaceCloud cloud;
                        if (gather(cloud, r, c, tolerance, minCount, maxDrop) >= minCount) {
                            append(all, exact(cloud.size(), cloud.points));
                        }
                    }
                }
            }
            if (!(level - levelStep < level)) {
                break;
            }
            level -= levelStep;
        }
        return all;
    }
};

TEST(Seeds, EqualThePlainDefinition) {
    int found = 0;
    forNasty(46, 1500, [&](Nasty& nasty) {
        const Heights heights = nastyHeights(nasty, 40);
        const int blockSize = nasty.pick(std::array{1, 1, 2, 3, 0});
        const float tolerance = nasty.pick(std::array{0.3f, 1.5f, 5.0f, 40.0f, kInf, 0.0f, kNaN});
        const float maxDrop = nasty.pick(std::array{kNaN, kNaN, 0.0f, 1.0f, 50.0f});
        const float levelStep = nasty.pick(std::array{0.7f, 3.0f, 40.0f, 0.0f, -1.0f, kNaN, kInf});
        const int minCount = nasty.pick(std::array{1, 1, 3, 20, 0, -5});
        const float start = nasty.chance(90) ? nasty.plain() + 5.0f : nasty.special();
        const float end = nasty.chance(90) ? start - 100.0f : nasty.value();
        if (end < start - 1e4f && std::fabs(start) < 1e9f) {
            return; // too many passes for the plain search
        }

        PlainSearch plain;
        fill(plain.matrix, heights, 0.5f);
        KxMatrixCloud matrix;
        fill(matrix, heights, 0.5f);
        Growing histos;
        histos.calcFromMatrixCloud(matrix, blockSize, 0, nullptr, nullptr);
        plain.rows = histos.histoRows;

        QList<SpaceCloud*> seeds;
        histos.extractSeeds(matrix, &seeds, start, end, levelStep, tolerance, minCount, maxDrop);
        ExactList clouds;
        for (SpaceCloud* const cloud : std::as_const(seeds)) {
            append(clouds, exact(cloud->size(), cloud->points));
        }
        found += static_cast<int>(seeds.size());
        EXPECT_EQ(KxMatrixWithHistos::freePointCloudList(seeds), seeds.size());
        ASSERT_EXACT(clouds, plain.extract(start, end, levelStep, tolerance, minCount, maxDrop));
        ASSERT_EXACT(histos.histoRows, plain.rows);
        ASSERT_EXACT(heightsOf(matrix), heightsOf(plain.matrix));
        ASSERT_TRUE(histos.pendingSeeds->isEmpty());
    });
    EXPECT_GT(found, 1000);
}

TEST(Seeds, GrowthPostponesWhatIsTooDeep) {
    forNasty(47, 600, [&](Nasty& nasty) {
        PlainSearch plain;
        const int columns = 1 + nasty.below(25);
        plain.rows = QList<QList<HistoCell>>(1 + nasty.below(25), QList<HistoCell>(columns));
        for (QList<HistoCell>& row : plain.rows) {
            for (HistoCell& cell : row) {
                const float mean = nasty.chance(80) ? nasty.plain() : nasty.value();
                cell = {mean, 0, 0, 0, 0, nasty.chance(5), false};
            }
        }
        const int row = nasty.below(static_cast<int>(plain.rows.size()));
        const int column = nasty.below(static_cast<int>(plain.rows[0].size()));
        const int depth = nasty.pick(std::array{0, 1, 150, 195, 200, 201, INT_MAX - 1});
        const float maxStep = nasty.pick(std::array{1.5f, 40.0f, kInf});
        const float maxDrop = nasty.pick(std::array{kNaN, 1.0f});
        plain.pending = {QPoint(0, 0), QPoint(row, column), QPoint(0, 0)};
        Growing histos;
        histos.histoRows = plain.rows;
        *histos.pendingSeeds = plain.pending;

        QList<QPoint> region{QPoint(-1, -1)};
        QList<QPoint> expected = region;
        histos.recFindNeighbours(region, row, column, 2, maxStep, maxDrop, depth);
        plain.grow(expected, row, column, 2, maxStep, maxDrop, depth);
        ASSERT_EQ(region, expected);
        ASSERT_EQ(*histos.pendingSeeds, plain.pending);
        ASSERT_EXACT(histos.histoRows, plain.rows);
    });
}

TEST(Seeds, AWholeScanIsOneSeed) {
    KxMatrixCloud matrix;
    fill(matrix, Heights(2000, QList<float>(1280, 5.0f)));
    KxMatrixWithHistos histos;
    histos.calcFromMatrixCloud(matrix, 2, 0, nullptr, nullptr);
    QList<SpaceCloud*> seeds;
    // A step much smaller than the levels needs millions of passes, but little time.
    EXPECT_EQ(histos.extractSeeds(matrix, &seeds, 5, 4, 1e-6f, 0.5f, 100, kNaN), 1);
    EXPECT_EQ(seeds[0]->size(), 1999 * 1279);
    EXPECT_EQ(matrix.size(), 2000 + 1280 - 1);
    seeds.append(nullptr);
    EXPECT_EQ(KxMatrixWithHistos::freePointCloudList(seeds), 1);
    EXPECT_EQ(histos.extractSeeds(matrix, nullptr, 5, 4, 1, 1, 1, kNaN), 0);
}

} // namespace
