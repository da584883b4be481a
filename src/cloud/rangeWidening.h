// Widening the cached range of a cloud by points.
#pragma once

#include "cloud/pointTraits.h"
#include "rounding/bounds.h"

#include <QtCore/qglobal.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace KxMath::detail {

/// Loads a point. Of points in space 16 bytes are read, whatever their size; the fourth lane has no meaning.
template <typename Point>
Coordinates loadCoordinates(const Point* p) {
    if constexpr (kHasZ<Point>) {
        return loadFloat4(&p->x);
    } else {
        return loadFloat2(&p->x);
    }
}

/// Widens the range of a cloud by one point.
template <typename Cloud, typename Point>
void widenRange(Cloud& cloud, const Point& p) {
    widen(cloud.minX, cloud.maxX, p.x);
    widen(cloud.minY, cloud.maxY, p.y);
    if constexpr (kHasZ<Point>) {
        widen(cloud.minZ, cloud.maxZ, p.z);
    }
}

/// True when no bound of the range is NaN.
template <typename Point, typename Cloud>
bool isRangeKnown(const Cloud& cloud) {
    const bool isKnownInPlane =
        !std::isnan(cloud.minX) && !std::isnan(cloud.maxX) && !std::isnan(cloud.minY) && !std::isnan(cloud.maxY);
    if constexpr (kHasZ<Point>) {
        return isKnownInPlane && !std::isnan(cloud.minZ) && !std::isnan(cloud.maxZ);
    }
    return isKnownInPlane;
}

/// Gives a bound that came out as 0 the sign of the first zero among the points. 0 and -0 compare equal, so that a
/// bound keeps the one that it met first; the unrolled loop meets them in another order.
template <typename Point>
void takeFirstZero(float& bound, float before, float Point::*coordinate, const Point* points, qsizetype count) {
    if (bound != 0.0f || before == 0.0f) {
        return; // a bound that was 0 before has kept its sign
    }
    const Point* const end = points + count;
    const Point* const first = std::find_if(points, end, [&](const Point& p) { return p.*coordinate == 0.0f; });
    bound = first->*coordinate;
}

/// Widens the range of a cloud by points, with the result of one after the other.
template <typename Cloud, typename Point>
void widenRange(Cloud& cloud, const Point* points, qsizetype count) {
    constexpr int kUnroll = 4; // independent bounds: a comparison does not wait for the one before
    const Point* const end = points + count;
    // One by one while a bound is unknown: only then may a NaN become a bound.
    for (; points != end && !isRangeKnown<Point>(cloud); ++points) {
        widenRange(cloud, *points);
    }
    const Point* const known = points;
    const Coordinates minBefore = {cloud.minX, cloud.minY, cloud.minZ, 0.0f};
    const Coordinates maxBefore = {cloud.maxX, cloud.maxY, cloud.maxZ, 0.0f};
    std::array<Coordinates, kUnroll> min;
    std::array<Coordinates, kUnroll> max;
    min.fill(minBefore);
    max.fill(maxBefore);
    for (; end - points > kUnroll;
         points += kUnroll) { // more than 12 bytes of a point are loaded: never of the last one
        for (std::size_t u = 0; u < kUnroll; ++u) {
            const Coordinates v = loadCoordinates(points + u);
            min[u] = minOf(v, min[u]);
            max[u] = maxOf(v, max[u]);
        }
    }
    for (std::size_t u = 1; u < kUnroll; ++u) {
        min[0] = minOf(min[u], min[0]);
        max[0] = maxOf(max[u], max[0]);
    }
    const auto settle = [&](float Point::*coordinate, int lane, float& low, float& high) {
        low = min[0][lane];
        high = max[0][lane];
        takeFirstZero(low, minBefore[lane], coordinate, known, points - known);
        takeFirstZero(high, maxBefore[lane], coordinate, known, points - known);
    };
    settle(&Point::x, 0, cloud.minX, cloud.maxX);
    settle(&Point::y, 1, cloud.minY, cloud.maxY);
    if constexpr (kHasZ<Point>) {
        settle(&Point::z, 2, cloud.minZ, cloud.maxZ);
    }
    for (; points != end; ++points) {
        widenRange(cloud, *points);
    }
}

} // namespace KxMath::detail
