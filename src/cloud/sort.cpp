// Sorting clouds, and the index of their runs of equal z.
#include "KxMath/KxPointCloud.h"

#include "lists/checked.h"
#include "sorting/ordering.h"
#include "sorting/rangeOrdering.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace KxMath {

namespace {

template <typename Point>
void sortByX(Point* first, Point* last, KxSortOrder order) {
    detail::stableSortAroundNaN(
        first, last, [](const Point& p) { return p.x; }, order == KxSortAscending);
}

template <typename Point>
void sortByZ(Point* first, Point* last, KxSortOrder order) {
    detail::stableSortAroundNaN(
        first, last, [](const Point& p) { return p.z; }, order == KxSortAscending);
}

template <typename Cloud>
void sortInSpace(Cloud& cloud, KxSortOrder byX, KxSortOrder byZ) {
    auto* const begin = detail::writable(cloud.points);
    auto* const end = begin + cloud.points.size();
    if (byZ == KxSortNone) {
        sortByX(begin, end, byX);
        return;
    }
    sortByZ(begin, end, byZ);
    cloud.buildZIndex();
    if (byX == KxSortNone) {
        return;
    }
    // Deliberately from index value to index value: each range starts at the last point of the run before, the last
    // run is not sorted, and values that fall (after a descending z sort) give no range.
    std::vector<detail::ClosedRange> ranges;
    int rangeStart = -1;
    for (const int value : std::as_const(cloud.zIndex)) {
        if (rangeStart >= 0 && rangeStart < value) {
            ranges.push_back({rangeStart, value});
        }
        rangeStart = value;
    }
    detail::stableSortRanges(
        begin, cloud.size(), ranges, [](const auto& p) { return p.x; }, byX == KxSortAscending);
}

/// A run of equal z, as the index holds it.
struct Run {
    float z;
    int value;
};

/// The runs but for the first one.
template <typename Point>
std::vector<Run> runsBehindFirst(const QList<Point>& points) {
    constexpr qsizetype kBlock = 32;
    std::vector<Run> runs;
    const Point* const data = points.constData();
    const qsizetype count = points.size();
    for (qsizetype begin = 1; begin < count; begin += kBlock) {
        const qsizetype end = std::min(count, begin + kBlock);
        int changes = 0; // counted without branches; most blocks have none
        for (qsizetype i = begin; i < end; ++i) {
            changes += data[i].z != data[i - 1].z ? 1 : 0; // NaN: 1, each is a run of its own
        }
        for (qsizetype i = begin; changes > 0 && i < end; ++i) {
            if (data[i].z != data[i - 1].z) {
                runs.push_back(
                    {data[i].z, static_cast<int>(i - 1)}); // deliberately the last position of the run before
            }
        }
    }
    return runs;
}

/// The map that inserting the runs one after the other makes, none of them being NaN: a key is that of its first
/// insertion (0 or -0), a value that of its last. Sorted first, each insertion is at the end and takes constant time.
QMap<float, int> indexOf(std::vector<Run>& runs) {
    detail::stableSortAroundNaN(
        runs.data(), runs.data() + runs.size(), [](const Run& run) { return run.z; }, true);
    std::map<float, int> index;
    for (const Run& run : runs) {
        index.insert_or_assign(index.end(), run.z, run.value);
    }
    return QMap<float, int>(std::move(index));
}

template <typename Cloud>
void indexRuns(Cloud& cloud) {
    cloud.zIndex.clear();
    cloud.zIndexBuilt = 1;
    if (cloud.points.isEmpty()) {
        return;
    }
    std::vector<Run> runs = runsBehindFirst(cloud.points);
    runs.insert(runs.begin(), {std::as_const(cloud.points)[0].z, 0});
    if (std::none_of(runs.begin(), runs.end(), [](const Run& run) { return std::isnan(run.z); })) {
        cloud.zIndex = indexOf(runs);
        return;
    }
    for (const Run& run : runs) { // with NaN among the keys the order of insertion counts
        cloud.zIndex.insert(run.z, run.value);
    }
}

} // namespace

void KxPointCloud<KxPointXY>::sort(KxSortOrder byX, KxSortOrder) {
    KxPointXY* const begin = detail::writable(points);
    sortByX(begin, begin + points.size(), byX);
}

void KxPointCloud<KxPointXYZ>::sort(KxSortOrder byX, KxSortOrder byZ) {
    sortInSpace(*this, byX, byZ);
}

void KxPointCloud<KxPointXYZRGB>::sort(KxSortOrder byX, KxSortOrder byZ) {
    sortInSpace(*this, byX, byZ);
}

void KxPointCloud<KxPointXYZ>::buildZIndex() {
    indexRuns(*this);
}

void KxPointCloud<KxPointXYZRGB>::buildZIndex() {
    indexRuns(*this);
}

} // namespace KxMath
