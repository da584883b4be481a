// Operations on a set of 2000 profiles and on its grid of heights.
#include "family.h"
#include "inputs.h"

#include <QtCore/QPoint>

namespace {

struct Job {
    KxMath::KxProfileZSet set;
    KxMath::KxMatrixCloud matrix;
    KxMath::KxMatrixWithHistos histos;
    KxMath::KxPointCloud<KxMath::KxPointXYZ> cloud;
};

template <typename Prepare, typename Work>
void addJob(const char* name, Prepare prepare, Work work) {
    kxbench::add<Job>(
        name, kxbench::kRows * kxbench::kProfilePoints, "kx", 1,
        [prepare](Job& job) {
            job.set = kxbench::profileSet();
            prepare(job);
        },
        work, kxbench::nothing<Job>);
}

void toMatrix(Job& j) {
    j.set.toMatrixCloud(j.matrix, 0.5f, 0.0625f);
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto nothing = [](Job&) {};
    const auto blocks = [](Job& j) {
        float a;
        float b;
        toMatrix(j);
        j.histos.calcFromMatrixCloud(j.matrix, 5, 0, &a, &b);
    };
    addJob("setWrite", nothing, [](Job& j) { j.set.writeToFile(QStringLiteral("/dev/shm/kxbench.set")); });
    addJob("setRead", nothing, [](Job& j) { j.set.readFromFile(QStringLiteral("/dev/shm/kxbench.set")); });
    addJob("setToCloud", nothing, [](Job& j) { j.set.toPointCloud(j.cloud); });
    addJob("setToMatrix", nothing, toMatrix);
    addJob(
        "setFromCloud", [](Job& j) { j.set.toPointCloud(j.cloud); },
        [](Job& j) { j.set.calcFromPointCloud(j.cloud, 0.0625f); });
    addJob("matrixSize", toMatrix, [](Job& j) { benchmark::DoNotOptimize(j.matrix.size()); });
    addJob("matrixTrim", toMatrix, [](Job& j) { j.matrix.trim(100, 1100, 25, 33, 100, 1900); });
    addJob("matrixToCloud", toMatrix, [](Job& j) { j.matrix.toPointCloud(j.cloud); });
    addJob("blockMeans5", toMatrix, [](Job& j) {
        float a;
        float b;
        j.histos.calcFromMatrixCloud(j.matrix, 5, 0, &a, &b);
    });
    addJob("blockMeans20", toMatrix, [](Job& j) {
        float a;
        float b;
        j.histos.calcFromMatrixCloud(j.matrix, 20, 0, &a, &b);
    });
    addJob("seeds", blocks, [](Job& j) {
        QList<KxMath::KxPointCloud<KxMath::KxPointXYZ>*> seeds;
        j.histos.extractSeeds(j.matrix, &seeds, 34, 20, 0.5f, 0.3f, 50, 2.0f);
        KxMath::KxMatrixWithHistos::freePointCloudList(seeds);
    });
    addJob("edges", blocks, [](Job& j) { j.histos.cutEdgeEffects(j.matrix, 0.8f); });
    return true;
}();

} // namespace
