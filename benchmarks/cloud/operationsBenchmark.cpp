// Operations on clouds of 1e5 and 1e6 points.
#include "family.h"
#include "inputs.h"

namespace {

using Cloud = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

struct Job {
    Cloud cloud;
    Cloud out;
};

template <typename Work>
void addJob(const char* name, bool isScan, int count, Work work, bool isIndexed = false) {
    const QList<KxMath::KxPointXYZ> points = isScan ? kxbench::scanPoints(count) : kxbench::randomPoints(count);
    kxbench::add<Job>(
        "cloud." + std::string(name) + "/" + std::to_string(count) + "/kx", 1,
        [points, isIndexed](Job& job) {
            job.cloud.points = points;
            job.cloud.points.detach();
            job.cloud.calcRange();
            if (isIndexed) {
                job.cloud.buildZIndex();
            }
        },
        work);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : {100000, 1000000}) {
        addJob("range", false, n, [](Job& j) { j.cloud.calcRange(); });
        addJob("sortZXrandom", false, n,
               [](Job& j) { j.cloud.sort(KxMath::KxSortAscending, KxMath::KxSortAscending); });
        addJob("sortZXscan", true, n, [](Job& j) { j.cloud.sort(KxMath::KxSortAscending, KxMath::KxSortAscending); });
        addJob("zIndexRows", true, n, [](Job& j) { j.cloud.buildZIndex(); });
        addJob("zIndexShuffled", false, n, [](Job& j) { j.cloud.buildZIndex(); });
        addJob("box", false, n, [](Job& j) {
            QList<int> p;
            j.cloud.getRangeIndeces(p, 20, 60, 20, 60, 20, 60);
            benchmark::DoNotOptimize(p.size());
        });
        addJob("ball", false, n, [](Job& j) {
            QList<int> p;
            j.cloud.getRangeIndeces(p, KxMath::KxPointXYZ(50, 50, 50), 50);
            benchmark::DoNotOptimize(p.size());
        });
        addJob("section", false, n, [](Job& j) { j.cloud.calcSection(j.out, 50, 10); });
        addJob("trim", false, n, [](Job& j) { j.cloud.trim(20, 60, 20, 60, 20, 60); });
        addJob(
            "extract", true, n, [](Job& j) { j.cloud.extract(j.out, 20, 60, -2, 2, 10, 30, false); }, true);
        addJob("removeIndecesHalf", false, n, [](Job& j) {
            QList<int> positions;
            for (int i = 0; i < j.cloud.size(); i += 2) {
                positions.append(i);
            }
            j.cloud.removeIndeces(positions);
        });
        addJob("rotate", false, n, [](Job& j) { j.cloud.rotate(10, 20, 30); });
        addJob("cubicFilter", true, n, [](Job& j) { j.cloud.cubicFilter(1.0f, 3); });
        addJob("cubicFilter2", true, n, [](Job& j) { j.cloud.cubicFilter2(1.0f, 0.3f, 3, false); });
        addJob("sphericalFilter2", true, n, [](Job& j) { j.cloud.sphericalFilter2(1.0f, 0.3f, 3); });
        addJob("histogram", true, n, [](Job& j) {
            KxMath::KxLevelHistogram<KxMath::KxPointXYZ> h;
            h.calcFromPointCloud(j.cloud, 0.05f);
            benchmark::DoNotOptimize(h.count());
        });
        addJob("write", false, n, [](Job& j) { j.cloud.writeToFile(QStringLiteral("/dev/shm/kxbench.cloud")); });
        addJob("read", false, n, [](Job& j) { j.out.readFromFile(QStringLiteral("/dev/shm/kxbench.cloud")); });
    }
    return true;
}();

} // namespace
