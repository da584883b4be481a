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
    const int batch = sortedLists(n);
    const auto fill = [next = nextPoints(n, order)](Points& points) {
        const QList<KxPointXY>& list = next();
        points.assign(list.begin(), list.end());
    };
    add<Points>(
        name, n, "peer_boost_spinsort", batch, fill,
        [](Points& p) { boost::sort::spinsort(p.begin(), p.end(), isLeft); }, digestXY<Points>);
    add<Points>(
        name, n, "peer_boost_flat_stable_sort", batch, fill,
        [](Points& p) { boost::sort::flat_stable_sort(p.begin(), p.end(), isLeft); }, digestXY<Points>);
    // Not stable: nothing to compare where there are ties.
    add<Points>(
        name, n, "peer_boost_pdqsort", batch, fill, [](Points& p) { boost::sort::pdqsort(p.begin(), p.end(), isLeft); },
        nothing<Points>);
}

/// By z, then x; what is in order already is so after it.
void addSpace(const std::string& name, Source source, int n) {
    const auto isBefore = [](const KxPointXYZ& a, const KxPointXYZ& b) {
        return a.z < b.z || (a.z == b.z && a.x < b.x);
    };
    add<CloudJob>(
        name, n, "peer_boost_pdqsort", 1, listOf(source, n),
        [=](CloudJob& j) { boost::sort::pdqsort(j.points.data(), j.points.data() + j.points.size(), isBefore); },
        [](CloudJob& j) { return digestHeap(j.points); });
    add<CloudJob>(
        name, n, "peer_boost_spinsort", 1, listOf(source, n),
        [=](CloudJob& j) { boost::sort::spinsort(j.points.data(), j.points.data() + j.points.size(), isBefore); },
        [](CloudJob& j) { return digestHeap(j.points); });
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kSortSizes) {
        for (const auto& [name, order] : kSortJobs) {
            addPlane(name, order, n);
        }
    }
    for (const int n : kCloudSizes) {
        for (const auto& [name, source] : kSpaceSortJobs) {
            addSpace(name, source, n);
        }
    }
    return true;
}();

} // namespace

} // namespace kxbench
