// The vectorised quicksort of Highway.
#include "cloud/jobs.h"

#include <hwy/contrib/sort/vqsort.h>

#include <bit>
#include <cstdint>
#include <vector>

namespace kxbench {

namespace {

using KxMath::KxPointXY;

using Points = std::vector<KxPointXY>;

/// It is not stable and sorts numbers alone: those of x with the place of the point behind it, by which the points are
/// fetched. All x are finite, and none is -0.
void sortByPlaces(Points& points) {
    constexpr std::uint32_t kSign = 0x80000000u;
    constexpr int kPlaceBits = 32;
    std::vector<std::uint64_t> keys(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(points[i].x);
        const std::uint32_t rising = (bits & kSign) != 0 ? ~bits : bits | kSign;
        keys[i] = std::uint64_t{rising} << kPlaceBits | i;
    }
    const hwy::Sorter sorter;
    sorter(keys.data(), keys.size(), hwy::SortAscending());
    Points sorted;
    sorted.reserve(points.size());
    for (const std::uint64_t key : keys) {
        sorted.push_back(points[static_cast<std::uint32_t>(key)]);
    }
    points.swap(sorted);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kSortSizes) {
        for (const auto& [name, order] : kSortJobs) {
            add<Points>(
                name, n, "peer_highway_vqsort", sortedLists(n),
                [next = nextPoints(n, order)](Points& points) {
                    const QList<KxPointXY>& list = next();
                    points.assign(list.begin(), list.end());
                },
                sortByPlaces, digestXY<Points>);
        }
    }
    return true;
}();

} // namespace

} // namespace kxbench
