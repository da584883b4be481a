// Density filters compared with a counting hash grid.
#include "cloud/jobs.h"

#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace kxbench {

namespace {

using KxMath::KxPointXYZ;

std::uint64_t cellOf(const KxPointXYZ& p) {
    const auto number = [](float v) { return static_cast<std::uint64_t>(std::floor(v / kCell)) & 0x1fffff; };
    return number(p.x) << 42 | number(p.y) << 21 | number(p.z);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        const auto fill = cloudOf(densePoints, n);
        add<CloudJob>(
            "cubicFilter", n, "kx", 1, fill, [](CloudJob& j) { j.cloud.cubicFilter(kCell, kMinCount); }, digestSize);
        add<CloudJob>(
            "cubicFilter", n, "peer_hash_grid", 1, fill,
            [](CloudJob& j) {
                std::unordered_map<std::uint64_t, int> counts;
                for (const KxPointXYZ& p : std::as_const(j.cloud.points)) {
                    ++counts[cellOf(p)];
                }
                j.cloud.points.removeIf([&](const KxPointXYZ& p) { return counts[cellOf(p)] < kMinCount; });
            },
            digestSize);
        add<CloudJob>(
            "cubicFilter2", n, "kx", 1, fill,
            [](CloudJob& j) { j.cloud.cubicFilter2(kCell, kMaxDistance, kMinCount, false); }, digestCloud);
        add<CloudJob>(
            "sphericalFilter2", n, "kx", 1, fill,
            [](CloudJob& j) { j.cloud.sphericalFilter2(kCell, kMaxDistance, kMinCount); }, digestSize);
    }
    return true;
}();

} // namespace

} // namespace kxbench
