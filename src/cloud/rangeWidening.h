// Widening the cached range of a cloud by points.
#pragma once

#include "cloud/pointTraits.h"
#include "rounding/bounds.h"

#include <QtCore/qglobal.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace KxMath::detail {

/// Loads a point. Of points in space 16 bytes are read, whatever their size; the fourth number has no meaning.
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

/// Gives a bound that came out as 0 the sign of the first zero in order, which the bound met before its equals: 0 and
/// -0 are neither lower nor higher than one another.
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
    constexpr int kChains = 4; // independent of each other, so that none waits for the one before
    const Point* const end = points + count;
    // One by one while a bound is unknown: only then may a NaN become a bound.
    for (; points != end && !isRangeKnown<Point>(cloud); ++points) {
        widenRange(cloud, *points);
    }
    const Point* const known = points;
    const Coordinates minBefore = {cloud.minX, cloud.minY, cloud.minZ, 0.0f};
    const Coordinates maxBefore = {cloud.maxX, cloud.maxY, cloud.maxZ, 0.0f};
    std::array<Coordinates, kChains> min;
    std::array<Coordinates, kChains> max;
    min.fill(minBefore);
    max.fill(maxBefore);
    for (; end - points > kChains; points += kChains) { // the last point has nothing behind it
        for (int chain = 0; chain < kChains; ++chain) {
            const Coordinates v = loadCoordinates(points + chain);
            min[chain] = lowerOf(v, min[chain]);
            max[chain] = upperOf(v, max[chain]);
        }
    }
    for (int chain = 1; chain < kChains; ++chain) {
        min[0] = lowerOf(min[chain], min[0]);
        max[0] = upperOf(max[chain], max[0]);
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
