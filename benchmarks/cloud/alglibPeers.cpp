// ALGLIB: the nearest neighbour of each point, and the removal of isolated points.
#include "cloud/jobs.h"

#include <alglibmisc.h>

namespace kxbench {

namespace {

void removeIsolated(CloudJob& job) {
    constexpr alglib::ae_int_t kAxes = 3;
    constexpr alglib::ae_int_t kEuclidean = 2;
    const QList<KxMath::KxPointXYZ> points = job.cloud.points;
    alglib::real_2d_array all;
    all.setlength(points.size(), kAxes);
    for (qsizetype i = 0; i < points.size(); ++i) {
        all[i][0] = static_cast<double>(points[i].x);
        all[i][1] = static_cast<double>(points[i].y);
        all[i][2] = static_cast<double>(points[i].z);
    }
    alglib::kdtree tree;
    alglib::kdtreebuild(all, kAxes, 0, kEuclidean, tree);
    alglib::real_1d_array at;
    at.setlength(kAxes);
    alglib::real_1d_array distances;
    job.cloud.points.removeIf([&](const KxMath::KxPointXYZ& p) {
        at[0] = static_cast<double>(p.x);
        at[1] = static_cast<double>(p.y);
        at[2] = static_cast<double>(p.z);
        alglib::kdtreequeryknn(tree, at, 1, false); // without the point itself
        alglib::kdtreequeryresultsdistances(tree, distances);
        return distances[0] > static_cast<double>(kMaxDistance);
    });
}

[[maybe_unused]] const bool isRegistered = [] {
    constexpr int kPoints = 100000; // ten times as many would take seconds
    addNeighbourSearch("peer_alglib", kPoints, removeIsolated);
    return true;
}();

} // namespace

} // namespace kxbench
