// Polar form and rotations of profiles.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "profile/coordinates.h"
#include "simd/blockPolar.h"

#include <algorithm>
#include <array>

namespace KxMath {

namespace {

/// Calls `change` with the x and the y of block after block of the points.
template <typename Change>
void changeBlocks(QList<KxPointXY>& points, Change change) {
    std::array<float, detail::kPolarBlock> xs;
    std::array<float, detail::kPolarBlock> ys;
    KxPointXY* const data = detail::writable(points);
    for (qsizetype begin = 0; begin < points.size(); begin += detail::kPolarBlock) {
        const qsizetype count = std::min<qsizetype>(points.size() - begin, detail::kPolarBlock);
        detail::copyXs(data + begin, count, xs.data());
        detail::copyYs(data + begin, count, ys.data());
        change(xs.data(), ys.data(), count);
        detail::setPoints(xs.data(), ys.data(), count, data + begin);
    }
}

} // namespace

void KxProfile::toPolar() {
    changeBlocks(points, [](float* xs, float* ys, qsizetype count) { detail::toPolar(xs, ys, count); });
}

void KxProfile::toEvklid() {
    changeBlocks(points, [](float* xs, float* ys, qsizetype count) { detail::fromPolar(xs, ys, count); });
}

void KxProfile::rotatePolar(float angle) {
    if (angle == 0.0f) {
        return;
    }
    for (KxPointXY& p : detail::writableSpan(points)) {
        p.y += angle;
    }
}

void KxProfile::rotateEvklid(float angle) {
    if (angle == 0.0f) {
        return;
    }
    toPolar();
    rotatePolar(angle);
    toEvklid();
}

void KxProfile::rotateFixed(float angle, KxPointXY& center) {
    const KxPointXY fixed = center; // also where the centre is a point of this profile
    shift(-fixed.x, -fixed.y, 0.0f);
    rotateEvklid(angle);
    shift(fixed.x, fixed.y, 0.0f);
}

} // namespace KxMath
