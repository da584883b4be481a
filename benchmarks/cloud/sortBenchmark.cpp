// Sorting clouds.
#include "cloud/jobs.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <numeric>
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

/// A key that rises with x. All x are finite, and none is -0.
std::uint32_t keyOf(float x) {
    constexpr std::uint32_t kSign = 0x80000000u;
    const auto bits = std::bit_cast<std::uint32_t>(x);
    return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

float xOf(std::uint32_t key) {
    constexpr std::uint32_t kSign = 0x80000000u;
    return std::bit_cast<float>((key & kSign) != 0 ? key ^ kSign : ~key);
}

/// From the lowest digit to the highest one, with keys that are made once.
template <int kBits>
void sortByRadix(std::vector<KxPointXY>& points) {
    constexpr std::size_t kValues = std::size_t{1} << kBits;
    constexpr std::size_t kDigits = (32 + kBits - 1) / kBits;
    struct Keyed {
        std::uint32_t key;
        float y;
    };
    std::vector<Keyed> from(points.size());
    std::vector<Keyed> to(points.size());
    std::array<std::array<std::uint32_t, kValues>, kDigits> places = {};
    const auto digit = [](std::uint32_t key, std::size_t d) { return (key >> (kBits * d)) % kValues; };
    for (std::size_t i = 0; i < points.size(); ++i) {
        from[i] = {keyOf(points[i].x), points[i].y};
        for (std::size_t d = 0; d < kDigits; ++d) {
            ++places[d][digit(from[i].key, d)];
        }
    }
    for (std::size_t d = 0; d < kDigits; ++d) {
        std::exclusive_scan(places[d].begin(), places[d].end(), places[d].begin(), std::uint32_t{0});
        for (const Keyed& point : from) {
            to[places[d][digit(point.key, d)]++] = point;
        }
        from.swap(to);
    }
    std::transform(from.begin(), from.end(), points.begin(),
                   [](const Keyed& point) { return KxPointXY(xOf(point.key), point.y); });
}

void addPlane(const std::string& name, Order order, int n) {
    const int batch = sortedLists(n);
    add<PlaneJob>(
        name, n, "kx", batch, [next = nextPoints(n, order)](PlaneJob& j) { j.cloud.points = freshCopy(next()); },
        [](PlaneJob& j) { j.cloud.sort(KxMath::KxSortAscending, KxMath::KxSortAscending); },
        [](PlaneJob& j) { return digestXY(j.cloud.points); });
    const auto fill = [next = nextPoints(n, order)](PlaneJob& j) {
        const QList<KxPointXY>& points = next();
        j.points.assign(points.begin(), points.end());
    };
    add<PlaneJob>(
        name, n, "peer_std_stable_sort", batch, fill,
        [](PlaneJob& j) {
            std::stable_sort(j.points.begin(), j.points.end(),
                             [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; });
        },
        digestVector);
    add<PlaneJob>(
        name, n, "peer_radix_8_bits", batch, fill, [](PlaneJob& j) { sortByRadix<8>(j.points); }, digestVector);
    add<PlaneJob>(
        name, n, "peer_radix_11_bits", batch, fill, [](PlaneJob& j) { sortByRadix<11>(j.points); }, digestVector);
    add<PlaneJob>(
        name, n, "limit_copy", batch, fill,
        [](PlaneJob& j) {
            std::vector<KxPointXY> copy = j.points;
            benchmark::DoNotOptimize(copy.data());
        },
        nothing<PlaneJob>);
}

void addSpace(const std::string& name, Source source, int n) {
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
