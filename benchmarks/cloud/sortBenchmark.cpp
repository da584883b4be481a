// Sorting clouds.
#include "cloud/jobs.h"

#include <algorithm>
#include <vector>

namespace kxbench {

namespace {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;

struct PlaneJob {
    KxMath::KxPointCloud<KxPointXY> cloud;
    std::vector<KxPointXY> points;
};

Digest digestVector(PlaneJob& job) {
    return digestXY(job.points);
}

void addPlane(const std::string& name, Order order, int n) {
    add<PlaneJob>(
        name, n, "kx", 1, [=](PlaneJob& j) { j.cloud.points = freshCopy(orderedPoints(n, order)); },
        [](PlaneJob& j) { j.cloud.sort(KxMath::KxSortAscending, KxMath::KxSortAscending); },
        [](PlaneJob& j) { return digestXY(j.cloud.points); });
    const auto fill = [=](PlaneJob& j) {
        const QList<KxPointXY>& points = orderedPoints(n, order);
        j.points.assign(points.begin(), points.end());
    };
    add<PlaneJob>(
        name, n, "peer_std_stable_sort", 1, fill,
        [](PlaneJob& j) {
            std::stable_sort(j.points.begin(), j.points.end(),
                             [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; });
        },
        digestVector);
    add<PlaneJob>(
        name, n, "limit_copy", 1, fill,
        [](PlaneJob& j) {
            std::vector<KxPointXY> copy = j.points;
            benchmark::DoNotOptimize(copy.data());
        },
        nothing<PlaneJob>);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        for (const auto& [name, order] : kSortJobs) {
            addPlane(name, order, n);
        }
        for (const bool isScan : {true, false}) {
            const char* const name =
                isScan ? "sort 3-D by z and x, shuffled rows" : "sort 3-D by z and x, all z differ";
            const Source source = isScan ? shuffledScan : randomPoints;
            add<CloudJob>(
                name, n, "kx", 1, cloudOf(source, n),
                [](CloudJob& j) { j.cloud.sort(KxMath::KxSortAscending, KxMath::KxSortAscending); },
                [](CloudJob& j) { return digestHeap(j.cloud.points); });
            add<CloudJob>(
                name, n, "peer_std_stable_sort", 1, listOf(source, n),
                [](CloudJob& j) {
                    std::stable_sort(j.points.begin(), j.points.end(), [](const KxPointXYZ& a, const KxPointXYZ& b) {
                        return a.z < b.z || (a.z == b.z && a.x < b.x);
                    });
                },
                [](CloudJob& j) { return digestHeap(j.points); });
        }
    }
    return true;
}();

} // namespace

} // namespace kxbench
