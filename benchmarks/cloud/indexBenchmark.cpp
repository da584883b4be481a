// The index of a cloud by z.
#include "cloud/jobs.h"

#include <algorithm>
#include <map>
#include <vector>

namespace kxbench {

namespace {

using Entry = std::pair<float, int>;

struct IndexJob {
    Cloud cloud;
    std::map<float, int> map;
    std::vector<Entry> entries;
};

template <typename Work>
void forEachRun(const Cloud& cloud, Work work) {
    const auto& points = cloud.points;
    work(points[0].z, 0);
    for (int i = 1; i < points.size(); ++i) {
        if (points[i].z != points[i - 1].z) {
            work(points[i].z, i - 1);
        }
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        for (const bool isScan : {true, false}) {
            const std::string name = isScan ? "index by z, rows" : "index by z, shuffled";
            const auto fill = [=](IndexJob& j) {
                j.cloud.points = freshCopy(isScan ? scanPoints(n) : randomPoints(n));
                j.cloud.calcRange();
            };
            const auto digestEntries = [](const auto& entries) {
                BitDigest digest;
                for (const auto& [key, value] : entries) {
                    digest.add(key);
                    digest.add(value);
                }
                return resultOf(digest);
            };
            add<IndexJob>(
                name, n, "kx", 1, fill, [](IndexJob& j) { j.cloud.buildZIndex(); },
                [=](IndexJob& j) { return digestEntries(j.cloud.zIndex.toStdMap()); });
            add<IndexJob>(
                name, n, "peer_std_map", 1, fill,
                [](IndexJob& j) { forEachRun(j.cloud, [&](float z, int i) { j.map.insert_or_assign(z, i); }); },
                [=](IndexJob& j) { return digestEntries(j.map); });
            add<IndexJob>(
                name, n, "peer_sorted_vector", 1, fill,
                [](IndexJob& j) {
                    forEachRun(j.cloud, [&](float z, int i) { j.entries.emplace_back(z, -i); });
                    std::sort(j.entries.begin(), j.entries.end()); // for equal keys the last position comes first
                    const auto end = std::unique(j.entries.begin(), j.entries.end(),
                                                 [](const Entry& a, const Entry& b) { return a.first == b.first; });
                    j.entries.erase(end, j.entries.end());
                },
                [=](IndexJob& j) {
                    for (Entry& entry : j.entries) {
                        entry.second = -entry.second;
                    }
                    return digestEntries(j.entries);
                });
        }
    }
    return true;
}();

} // namespace

} // namespace kxbench
