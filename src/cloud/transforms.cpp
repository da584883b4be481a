// Moving, scaling and turning clouds.
#include "KxMath/KxPointCloud.h"

#include "lists/checked.h"
#include "simd/blockPolar.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace KxMath {

namespace {

/// Adds `offset` to one coordinate of all points. An offset of exactly 0 touches nothing, so that NaN stays NaN.
template <typename Point>
void shiftCoordinate(QList<Point>& points, float Point::*coordinate, float offset) {
    if (offset == 0.0f || points.isEmpty()) {
        return;
    }
    for (Point& p : detail::writableSpan(points)) {
        p.*coordinate += offset;
    }
}

template <typename Point>
void scaleCoordinate(QList<Point>& points, float Point::*coordinate, float factor) {
    if (factor == 1.0f || points.isEmpty()) {
        return;
    }
    for (Point& p : detail::writableSpan(points)) {
        p.*coordinate *= factor;
    }
}

/// Turns all points by `deg` degrees in the plane of two coordinates, from +first towards +second.
void rotateInPlane(QList<KxPointXYZ>& points, float KxPointXYZ::*first, float KxPointXYZ::*second, float deg) {
    std::array<float, detail::kPolarBlock> as;
    std::array<float, detail::kPolarBlock> bs;
    KxPointXYZ* const data = detail::writable(points);
    for (qsizetype begin = 0; begin < points.size(); begin += detail::kPolarBlock) {
        const qsizetype count = std::min<qsizetype>(points.size() - begin, detail::kPolarBlock);
        KxPointXYZ* const block = data + begin;
        for (qsizetype i = 0; i < count; ++i) {
            as[static_cast<std::size_t>(i)] = block[i].*first;
            bs[static_cast<std::size_t>(i)] = block[i].*second;
        }
        detail::toPolar(as.data(), bs.data(), count);
        for (qsizetype i = 0; i < count; ++i) {
            bs[static_cast<std::size_t>(i)] += deg;
        }
        detail::fromPolar(as.data(), bs.data(), count);
        for (qsizetype i = 0; i < count; ++i) {
            block[i].*first = as[static_cast<std::size_t>(i)];
            block[i].*second = bs[static_cast<std::size_t>(i)];
        }
    }
}

bool isTurn(float deg) {
    return deg != 0.0f && !std::isnan(deg);
}

} // namespace

void KxPointCloud<KxPointXY>::shift(float dx, float dy, float) {
    shiftCoordinate(points, &KxPointXY::x, dx);
    shiftCoordinate(points, &KxPointXY::y, dy);
}

void KxPointCloud<KxPointXY>::resize(float sx, float sy, float) {
    scaleCoordinate(points, &KxPointXY::x, sx);
    scaleCoordinate(points, &KxPointXY::y, sy);
}

void KxPointCloud<KxPointXYZ>::shift(float dx, float dy, float dz) {
    shiftCoordinate(points, &KxPointXYZ::x, dx);
    shiftCoordinate(points, &KxPointXYZ::y, dy);
    shiftCoordinate(points, &KxPointXYZ::z, dz);
}

void KxPointCloud<KxPointXYZRGB>::shift(float dx, float dy, float dz) {
    shiftCoordinate(points, &KxPointXYZRGB::x, dx);
    shiftCoordinate(points, &KxPointXYZRGB::y, dy);
    shiftCoordinate(points, &KxPointXYZRGB::z, dz);
}

void KxPointCloud<KxPointXYZ>::rotateXY(float deg) {
    rotateInPlane(points, &KxPointXYZ::x, &KxPointXYZ::y, deg);
    zIndexBuilt = 0;
}

void KxPointCloud<KxPointXYZ>::rotateXZ(float deg) {
    rotateInPlane(points, &KxPointXYZ::x, &KxPointXYZ::z, deg);
    zIndexBuilt = 0;
}

void KxPointCloud<KxPointXYZ>::rotateYZ(float deg) {
    rotateInPlane(points, &KxPointXYZ::y, &KxPointXYZ::z, deg);
    zIndexBuilt = 0;
}

void KxPointCloud<KxPointXYZ>::rotate(float degXY, float degXZ, float degYZ) {
    if (isTurn(degXY)) {
        rotateXY(degXY);
    }
    if (isTurn(degXZ)) {
        rotateXZ(degXZ);
    }
    if (isTurn(degYZ)) {
        rotateYZ(degYZ);
    }
}

} // namespace KxMath
