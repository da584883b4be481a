// Sorting clouds, and the index of their runs of equal z.
#include "KxMath/KxPointCloud.h"

#include "numeric/ordering.h"
#include "numeric/stretchOrdering.h"

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
void sortInSpace(Cloud& cloud, KxSortOrder first, KxSortOrder second) {
    auto* const begin = cloud.points.data();
    auto* const end = begin + cloud.points.size();
    if (second == KxSortNone) {
        sortByX(begin, end, first);
        return;
    }
    sortByZ(begin, end, second);
    cloud.buildZIndex();
    if (first == KxSortNone) {
        return;
    }
    // Deliberately from index value to index value: each stretch starts at the last point of the run before, the last
    // run is not sorted, and values that fall (after a descending z sort) give no stretch.
    std::vector<detail::ClosedStretch> stretches;
    int stretchStart = -1;
    for (const int value : std::as_const(cloud.zIndex)) {
        if (stretchStart >= 0 && stretchStart < value) {
            stretches.push_back({stretchStart, value});
        }
        stretchStart = value;
    }
    detail::stableSortStretches(
        begin, cloud.size(), stretches, [](const auto& p) { return p.x; }, first == KxSortAscending);
}

template <typename Cloud>
void indexRuns(Cloud& cloud) {
    const auto& points = std::as_const(cloud.points);
    cloud.zIndex.clear();
    cloud.zIndexBuilt = 1;
    if (points.isEmpty()) {
        return;
    }
    float current = points[0].z;
    cloud.zIndex.insert(current, 0);
    for (qsizetype i = 1; i < points.size(); ++i) {
        if (points[i].z == current) { // NaN: false, each is a run of its own
            continue;
        }
        current = points[i].z;
        // Deliberately i - 1, the last position of the run before.
        cloud.zIndex.insert(current, static_cast<int>(i - 1));
    }
}

} // namespace

void KxPointCloud<KxPointXY>::sort(KxSortOrder first, KxSortOrder) {
    sortByX(points.data(), points.data() + points.size(), first);
}

void KxPointCloud<KxPointXYZ>::sort(KxSortOrder first, KxSortOrder second) {
    sortInSpace(*this, first, second);
}

void KxPointCloud<KxPointXYZRGB>::sort(KxSortOrder first, KxSortOrder second) {
    sortInSpace(*this, first, second);
}

void KxPointCloud<KxPointXYZ>::buildZIndex() {
    indexRuns(*this);
}

void KxPointCloud<KxPointXYZRGB>::buildZIndex() {
    indexRuns(*this);
}

} // namespace KxMath
