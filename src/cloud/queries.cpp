// Finding points by coordinate, box or ball.
#include "KxMath/KxPointCloud.h"

#include "cloud/box.h"
#include "geometry/squareOfDistance.h"
#include "lists/filtering.h"
#include "rounding/bounds.h"
#include "rounding/largestSquare.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

template <typename Point>
int indexOf(const QList<Point>& points, float Point::*coordinate, float v) {
    for (qsizetype i = 0; i < points.size(); ++i) {
        if (points[i].*coordinate == v) { // NaN: false
            return static_cast<int>(i);
        }
    }
    return -1;
}

/// Replaces `out` by the positions of the points that `accept` takes and returns their number.
template <typename Point, typename Accept>
int collectPositions(const QList<Point>& points, QList<int>& out, Accept accept) {
    const Point* const data = points.constData();
    out = detail::collectIf<int>(
        points.size(), [&](qsizetype i) { return accept(data[i]); }, [](qsizetype i) { return static_cast<int>(i); });
    return static_cast<int>(out.size());
}

} // namespace

int KxPointCloud<KxPointXY>::getIndexX(float v) {
    return indexOf(points, &KxPointXY::x, v);
}

int KxPointCloud<KxPointXY>::getIndexY(float v) {
    return indexOf(points, &KxPointXY::y, v);
}

int KxPointCloud<KxPointXY>::getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY) {
    const auto isInBox = [&](const KxPointXY& p) {
        return detail::isInside(p.x, minX, maxX) && detail::isInside(p.y, minY, maxY);
    };
    return collectPositions(points, out, isInBox);
}

int KxPointCloud<KxPointXYZ>::getIndexX(float v) {
    return indexOf(points, &KxPointXYZ::x, v);
}

int KxPointCloud<KxPointXYZ>::getIndexY(float v) {
    return indexOf(points, &KxPointXYZ::y, v);
}

int KxPointCloud<KxPointXYZ>::getIndexZ(float v) {
    return indexOf(points, &KxPointXYZ::z, v);
}

int KxPointCloud<KxPointXYZ>::getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY,
                                              float minZ, float maxZ) {
    const detail::Box box{minX, maxX, minY, maxY, minZ, maxZ};
    return collectPositions(points, out, [&](const KxPointXYZ& p) { return box.contains(p); });
}

int KxPointCloud<KxPointXYZ>::getRangeIndeces(QList<int>& out, KxPointXYZ centre, float diameter) {
    const float limit = detail::largestSquare(diameter * 0.5f); // compared with the squares of the distances, as exact
    return collectPositions(points, out, [&](const KxPointXYZ& p) {
        return detail::squareOfDistance(p.x - centre.x, p.y - centre.y, p.z - centre.z) <= limit; // NaN: false
    });
}

int KxPointCloud<KxPointXYZRGB>::getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY,
                                                 float minZ, float maxZ) {
    const detail::Box box{minX, maxX, minY, maxY, minZ, maxZ};
    return collectPositions(points, out, [&](const KxPointXYZRGB& p) { return box.contains(p); });
}

} // namespace KxMath
