// Sets of profiles and grids of heights.
#include "golden.h"

#include <QtCore/QPoint>

using namespace KxMath;

namespace golden {

namespace {

void print(const char* name, const KxProfileZSet& set) {
    QList<float> zs;
    QList<KxPointXY> points;
    for (const KxProfileZ& profile : set.profiles) {
        zs.append(profile.z);
        points.append(profile.points);
    }
    Line(name) << zs << points << set.minX << set.maxX << set.minY << set.maxY << set.minZ << set.maxZ << set.stepZ;
}

void print(const char* name, const KxMatrixCloud& matrix) {
    QList<float> heights;
    for (int row = 0; row < matrix.rows; ++row) {
        heights.append(QList<float>(matrix.cells[row], matrix.cells[row] + matrix.columns));
    }
    Line(name) << matrix.rows << matrix.columns << matrix.step << matrix.minX << matrix.maxX << matrix.minY
               << matrix.maxY << matrix.minZ << matrix.maxZ << heights;
}

} // namespace

void printGrids() {
    KxProfileZSet set;
    for (std::uint32_t i = 0; i < 60; ++i) {
        KxProfileZ profile;
        profile.points = profilePoints(100 + i, 200, 50, i % 3 == 1);
        set.profiles.append(profile);
    }
    set.setZ(0.3f, 0.25f);
    set.calcRange();
    print("set", set);
    KxProfileZSet part;
    Line("set.measures") << set.getRange(3.0f, 9.1f, part) << part.size() << set.calcAverageY();
    KxPointCloud<KxPointXYZ> cloud;
    set.toPointCloud(cloud);
    Line("set.cloud") << cloud;
    KxProfileZSet sliced;
    sliced.calcFromPointCloud(cloud, 0.4f);
    print("set.sliced", sliced);
    KxMatrixCloud matrix;
    set.toMatrixCloud(matrix, 0.5f, 0.25f);
    print("set.matrix", matrix);
    KxProfileZSet cleared(set);
    cleared.clearEdgeEffect();
    print("set.cleared", cleared);

    KxMatrixWithHistos histos;
    float low = 0, high = 0;
    const int blocks = histos.calcFromMatrixCloud(matrix, 5, 0, &low, &high);
    QList<float> means;
    for (const QList<HistoCell>& row : histos.histoRows) {
        for (const HistoCell& cell : row) {
            means.append(cell.mean);
        }
    }
    Line("blocks") << blocks << low << high << means;
    KxPointCloud<KxPointXYZ> blockCloud;
    histos.toPointCloud(blockCloud, 0.25f);
    Line("blocks.cloud") << blockCloud;
    QList<KxPointCloud<KxPointXYZ>*> seeds;
    const int seedCount = histos.extractSeeds(matrix, &seeds, 25, -5, 1.0f, 0.5f, 20, 2.0f);
    Line("seeds") << seedCount;
    for (const KxPointCloud<KxPointXYZ>* seed : std::as_const(seeds)) {
        Line("seed") << *seed;
    }
    KxMatrixWithHistos::freePointCloudList(seeds);

    KxMatrixCloud again;
    set.toMatrixCloud(again, 0.5f, 0.25f);
    histos.calcFromMatrixCloud(again, 4, 0, &low, &high);
    Line("edges") << histos.cutEdgeEffects(again, 0.8f);
    print("edges.matrix", again);
    set.toMatrixCloud(again, 0.5f, 0.25f);
    again.trim(3, 150, 5, 22, 2, 50);
    again.reflect();
    again.clearEdgeEffect();
    print("matrix.trimmed", again);
    again.toPointCloud(cloud);
    Line("matrix.cloud") << cloud;
}

} // namespace golden
