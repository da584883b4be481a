// Input and output of the competitors for operations on clouds.
#pragma once

#include "digests.h"
#include "inputs.h"

#include <memory>
#include <utility>

namespace kxbench {

using Cloud = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

constexpr int kCloudSizes[] = {100000, 1000000};

/// A cloud with its range, a cloud for the result, and points for competitors that work on plain lists.
struct CloudJob {
    Cloud cloud;
    Cloud out;
    QList<int> positions;
    QList<KxMath::KxPointXYZ> points;
};

using Source = const QList<KxMath::KxPointXYZ>& (*)(int count);

/// Fills the cloud.
inline auto cloudOf(Source source, int count) {
    return [=](CloudJob& job) {
        job.cloud.points = freshCopy(source(count));
        job.cloud.calcRange();
    };
}

/// Fills the list.
inline auto listOf(Source source, int count) {
    return [=](CloudJob& job) { job.points = freshCopy(source(count)); };
}

inline Digest digestPositions(CloudJob& job) {
    return digestValues(job.positions);
}
inline Digest digestCloud(CloudJob& job) {
    return digestXY(job.cloud.points);
}
inline Digest digestOut(CloudJob& job) {
    return digestXY(job.out.points);
}
inline Digest digestList(CloudJob& job) {
    return digestXY(job.points);
}

/// Approximate count: balls at the rim of a cloud hold few points, and points between balls are not visited.
inline Digest digestSize(CloudJob& job) {
    return {static_cast<double>(job.cloud.size()), 0.005};
}

/// Of the points in any order: the library's runs of equal z overlap by one point, so that the positions of a few differ.
template <typename Points>
Digest digestHeap(const Points& points) {
    double sum = 0.0;
    for (const auto& p : points) {
        sum += static_cast<double>(p.x) * static_cast<double>(p.z);
    }
    return {sum, 1e-9};
}

/// The orders of points that are sorted, with the names of the jobs.
constexpr std::pair<const char*, Order> kSortJobs[] = {{"sort 2-D, random", Order::Random},
                                                       {"sort 2-D, ties", Order::Ties},
                                                       {"sort 2-D, sorted", Order::Sorted},
                                                       {"sort 2-D, reversed", Order::Reversed},
                                                       {"sort 2-D, last 1 % out of order", Order::Tail},
                                                       {"sort 2-D, 1 % swapped", Order::Swapped},
                                                       {"sort 2-D, sawtooth", Order::Sawtooth}};

/// The same in space: by z, then by x.
constexpr std::pair<const char*, Source> kSpaceSortJobs[] = {{"sort 3-D by z and x, shuffled rows", shuffledScan},
                                                             {"sort 3-D by z and x, all z differ", randomPoints},
                                                             {"sort 3-D by z and x, in order", scanPoints},
                                                             {"sort 3-D by z and x, reversed", reversedScan}};

/// Profiles, and clouds.
constexpr int kSortSizes[] = {640, 1280, 4096, 100000, 1000000};

/// How many lists of points are sorted in one measurement: of small ones so many that the processor cannot learn their
/// order.
constexpr int sortedLists(int count) {
    return count < 10000 ? 64 : 1;
}

/// The points of one list after the other, each time that an object is prepared.
inline auto nextPoints(int count, Order order) {
    return [=, next = std::make_shared<int>(0)]() -> const QList<KxMath::KxPointXY>& {
        const int list = (*next)++ % sortedLists(count);
        return orderedPoints(count, order, list);
    };
}

/// The box of the queries holds a sixteenth of `randomPoints`.
constexpr float kLow = 20.0f;
constexpr float kHigh = 60.0f;

inline bool isInBox(const KxMath::KxPointXYZ& p) {
    return p.x >= kLow && p.x <= kHigh && p.y >= kLow && p.y <= kHigh && p.z >= kLow && p.z <= kHigh;
}

/// Density filters on `densePoints`: cells of about 125 points, without isolated points.
constexpr float kCell = 5.0f;
constexpr float kMaxDistance = 4.0f;
constexpr int kMinCount = 3;

/// A competitor for both filters that remove isolated points.
inline void addNeighbourSearch(const char* who, int n, void (*removeIsolated)(CloudJob&)) {
    const auto fill = cloudOf(densePoints, n);
    add<CloudJob>("cubicFilter2", n, who, 1, fill, removeIsolated, digestCloud);
    add<CloudJob>("sphericalFilter2", n, who, 1, fill, removeIsolated, digestSize);
}

} // namespace kxbench
