// Widening the cached range of a cloud by points.
#pragma once

#include "cloud/pointTraits.h"
#include "numeric/bounds.h"

#include <QtCore/qglobal.h>

#include <cmath>
#include <cstring>

namespace KxMath::detail {

/// The coordinates of one point in one register.
using Coordinates __attribute__((vector_size(16))) = float;

/// Loads a point. Of points in space 16 bytes are read, whatever their size; what is behind z stands for nothing.
template <typename Point>
Coordinates loadCoordinates(const Point* p) {
    Coordinates v = {};
    std::memcpy(&v, static_cast<const void*>(p), kHasZ<Point> ? sizeof(v) : sizeof(v) / 2);
    return v;
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

/// Widens the range of a cloud by points, with the result of one after the other.
template <typename Cloud, typename Point>
void widenRange(Cloud& cloud, const Point* points, qsizetype count) {
    const Point* const end = points + count;
    // One by one while a bound is unknown: only then may a NaN become a bound.
    for (; points != end && !isRangeKnown<Point>(cloud); ++points) {
        widenRange(cloud, *points);
    }
    Coordinates min = {cloud.minX, cloud.minY, cloud.minZ, 0.0f};
    Coordinates max = {cloud.maxX, cloud.maxY, cloud.maxZ, 0.0f};
    for (; end - points > 1; ++points) { // the last one has nothing behind it
        const Coordinates v = loadCoordinates(points);
        min = v < min ? v : min; // NaN: false
        max = v > max ? v : max;
    }
    cloud.minX = min[0];
    cloud.maxX = max[0];
    cloud.minY = min[1];
    cloud.maxY = max[1];
    if constexpr (kHasZ<Point>) {
        cloud.minZ = min[2];
        cloud.maxZ = max[2];
    }
    if (points != end) {
        widenRange(cloud, *points);
    }
}

} // namespace KxMath::detail
