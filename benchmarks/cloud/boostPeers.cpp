// Boost.Sort.
#include "cloud/jobs.h"

#include <boost/sort/flat_stable_sort/flat_stable_sort.hpp>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <boost/sort/spinsort/spinsort.hpp>

#include <vector>

namespace kxbench {

namespace {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;

using Points = std::vector<KxPointXY>;

bool isLeft(const KxPointXY& a, const KxPointXY& b) {
    return a.x < b.x;
}

void addPlane(const std::string& name, Order order, int n) {
    const auto fill = [=](Points& points) {
        points.assign(orderedPoints(n, order).begin(), orderedPoints(n, order).end());
    };
    add<Points>(
        name, n, "peer_boost_spinsort", 1, fill, [](Points& p) { boost::sort::spinsort(p.begin(), p.end(), isLeft); },
        digestXY<Points>);
    add<Points>(
        name, n, "peer_boost_flat_stable_sort", 1, fill,
        [](Points& p) { boost::sort::flat_stable_sort(p.begin(), p.end(), isLeft); }, digestXY<Points>);
    // Not stable: nothing to compare where there are ties.
    add<Points>(
        name, n, "peer_boost_pdqsort", 1, fill, [](Points& p) { boost::sort::pdqsort(p.begin(), p.end(), isLeft); },
        nothing<Points>);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        for (const auto& [name, order] : kSortJobs) {
            addPlane(name, order, n);
        }
        for (const bool isScan : {true, false}) {
            add<CloudJob>(
                isScan ? "sort 3-D by z and x, shuffled rows" : "sort 3-D by z and x, all z differ", n,
                "peer_boost_pdqsort", 1, listOf(isScan ? shuffledScan : randomPoints, n),
                [](CloudJob& j) {
                    boost::sort::pdqsort(j.points.data(), j.points.data() + j.points.size(),
                                         [](const KxPointXYZ& a, const KxPointXYZ& b) {
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
