// Free vectors in the plane.
#include "KxMath/KxPointCloud.h"
#include "KxMath/KxPrimitives.h"

#include "rounding/angles.h"
#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

using detail::kNaN;

KxFreeVector::KxFreeVector() : x(kNaN), y(kNaN) {}

KxFreeVector::KxFreeVector(float x, float y) : x(x), y(y) {}

float KxFreeVector::size() {
    return std::sqrt(x * x + y * y);
}

bool KxFreeVector::resize(float len) {
    if (len <= 0.0f) { // NaN: false
        return false;
    }
    const float factor = len / size();
    x *= factor;
    y *= factor;
    return true;
}

bool KxFreeVector::sumVectors(KxFreeVector& lhs, KxFreeVector& rhs) {
    KxFreeVector sum(lhs.x + rhs.x, lhs.y + rhs.y);
    const float length = sum.size();
    if (length == 0.0f) {
        return false;
    }
    x = sum.x / length;
    y = sum.y / length;
    return true;
}

float KxFreeVector::calcAngleBetweenVectors(KxFreeVector& lhs, KxFreeVector& rhs) {
    const float lengths = std::sqrt((rhs.y * rhs.y + rhs.x * rhs.x) * (lhs.y * lhs.y + lhs.x * lhs.x));
    if (lengths == 0.0f) {
        return kNaN;
    }
    const float cosine = (lhs.y * rhs.y + lhs.x * rhs.x) / lengths;
    return static_cast<float>(std::acos(static_cast<double>(cosine)) * 180.0 / detail::kPi);
}

float KxFreeVector::calcAngleBetweenVectors(KxFreeVector& other) {
    return calcAngleBetweenVectors(*this, other);
}

bool KxFreeVector::calcFromPointCloud(KxPointCloud<KxPointXY>& cloud, int start, int dir, float len) {
    if (dir != 1 && dir != -1) {
        return false;
    }
    const QList<KxPointXY>& points = cloud.points;
    const auto isInside = [&](qsizetype i) { return i >= 0 && i < points.size(); };
    // Deliberately start + dir: the direction is taken from the point beside the named one.
    qsizetype i = static_cast<qsizetype>(start) + dir;
    if (!isInside(i) || !isInside(i + dir) || len <= 0.0f) {
        return false;
    }
    const KxPointXY base = points[i];
    float dx = 0.0f;
    float dy = 0.0f;
    float distance = 0.0f;
    while ((std::isnan(len) || !(distance >= len)) && isInside(i + dir)) {
        i += dir;
        dx = points[i].x - base.x;
        dy = points[i].y - base.y;
        const float sum = dx * dx + dy * dy;
        distance = std::sqrt(sum);
    }
    x = dx / distance;
    y = dy / distance;
    return true;
}

} // namespace KxMath
