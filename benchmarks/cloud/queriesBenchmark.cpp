// Range, queries by box and ball, sections, and removal, compared with plain loops.
#include "cloud/jobs.h"

#include <algorithm>

namespace kxbench {

namespace {

using KxMath::KxPointXYZ;

void addRange(int n) {
    add<CloudJob>(
        "range", n, "kx", 1, cloudOf(randomPoints, n), [](CloudJob& j) { j.cloud.calcRange(); },
        [](CloudJob& j) {
            return Digest{static_cast<double>(j.cloud.maxZ - j.cloud.minX), 0};
        });
    add<CloudJob>(
        "range", n, "peer_plain_loop", 1, cloudOf(randomPoints, n),
        [](CloudJob& j) {
            KxPointXYZ low = j.cloud.points[0];
            KxPointXYZ high = low;
            for (const KxPointXYZ& p : std::as_const(j.cloud.points)) {
                low.x = std::min(low.x, p.x);
                low.y = std::min(low.y, p.y);
                low.z = std::min(low.z, p.z);
                high.x = std::max(high.x, p.x);
                high.y = std::max(high.y, p.y);
                high.z = std::max(high.z, p.z);
            }
            j.out.points = {low, high};
        },
        [](CloudJob& j) {
            return Digest{static_cast<double>(j.out.points[1].z - j.out.points[0].x), 0};
        });
}

template <typename Work>
void addPositions(const char* name, int n, const char* who, Work work) {
    add<CloudJob>(name, n, who, 1, cloudOf(randomPoints, n), work, digestPositions);
}

template <typename IsWanted>
void collect(CloudJob& job, IsWanted isWanted) {
    for (int i = 0; i < job.cloud.points.size(); ++i) {
        if (isWanted(std::as_const(job.cloud.points)[i])) {
            job.positions.append(i);
        }
    }
}

template <typename IsWanted>
void copyIf(CloudJob& job, IsWanted isWanted) {
    for (const KxPointXYZ& p : std::as_const(job.cloud.points)) {
        if (isWanted(p)) {
            job.out.points.append(p);
        }
    }
}

void addQueries(int n) {
    addPositions("box query", n, "kx",
                 [](CloudJob& j) { j.cloud.getRangeIndeces(j.positions, kLow, kHigh, kLow, kHigh, kLow, kHigh); });
    addPositions("box query", n, "peer_plain_loop", [](CloudJob& j) { collect(j, isInBox); });
    const KxPointXYZ center(50, 50, 50);
    const auto isInBall = [=](const KxPointXYZ& p) { return KxPointXYZ::calcDistance(p, center) <= 25.0f; };
    addPositions("ball query", n, "kx", [=](CloudJob& j) { j.cloud.getRangeIndeces(j.positions, center, 50); });
    addPositions("ball query", n, "peer_plain_loop", [=](CloudJob& j) { collect(j, isInBall); });

    const auto fill = cloudOf(randomPoints, n);
    add<CloudJob>(
        "section", n, "kx", 1, fill, [](CloudJob& j) { j.cloud.calcSection(j.out, 50, 10); }, digestOut);
    add<CloudJob>(
        "section", n, "peer_plain_loop", 1, fill,
        [](CloudJob& j) { copyIf(j, [](const KxPointXYZ& p) { return std::abs(p.z - 50.0f) <= 10.0f; }); }, digestOut);
    add<CloudJob>(
        "trim", n, "kx", 1, fill, [](CloudJob& j) { j.cloud.trim(kLow, kHigh, kLow, kHigh, kLow, kHigh); },
        digestCloud);
    add<CloudJob>(
        "trim", n, "peer_plain_loop", 1, fill,
        [](CloudJob& j) {
            j.cloud.points.removeIf([](const KxPointXYZ& p) { return !isInBox(p); });
            j.cloud.calcRange();
        },
        digestCloud);
    add<CloudJob>(
        "extract", n, "kx", 1, fill,
        [](CloudJob& j) { j.cloud.extract(j.out, kLow, kHigh, kLow, kHigh, kLow, kHigh, false); }, digestOut);
    add<CloudJob>(
        "extract", n, "peer_plain_loop", 1, fill,
        [](CloudJob& j) {
            for (auto p = j.cloud.points.crbegin(); p != j.cloud.points.crend(); ++p) { // the last one first
                if (isInBox(*p)) {
                    j.out.points.append(*p);
                }
            }
        },
        digestOut);
}

void addRemoval(int n) {
    const auto fill = [=](CloudJob& job) {
        cloudOf(randomPoints, n)(job);
        for (int i = 0; i < n; i += 2) {
            job.positions.append(static_cast<int>(i * 7919LL % n) / 2 * 2); // n and 7919 have no factor in common
        }
    };
    add<CloudJob>(
        "removeIndeces, half", n, "kx", 1, fill, [](CloudJob& j) { j.cloud.removeIndeces(j.positions); }, digestCloud);
    add<CloudJob>(
        "removeIndeces, half", n, "peer_sort_and_compact", 1, fill,
        [](CloudJob& j) {
            std::sort(j.positions.begin(), j.positions.end());
            auto next = j.positions.cbegin();
            int position = 0;
            j.cloud.points.removeIf([&](const KxPointXYZ&) {
                const bool isNamed = next != j.positions.cend() && *next == position;
                ++position;
                next += isNamed ? 1 : 0;
                return isNamed;
            });
        },
        digestCloud);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        addRange(n);
        addQueries(n);
        addRemoval(n);
    }
    return true;
}();

} // namespace

} // namespace kxbench
