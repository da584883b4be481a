// Lines in slope form.
#include "KxMath/KxPointCloud.h"
#include "KxMath/KxPrimitives.h"

#include "geometry/lineFit.h"
#include "rounding/angles.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

using detail::kNaN;

KxLine::KxLine() : k(kNaN), b(kNaN) {}

KxLine::KxLine(float k, float b) : k(k), b(b) {}

float KxLine::y(float x) {
    return k * x + b;
}

float KxLine::x(float y) {
    return (y - b) / k;
}

bool KxLine::calcFromTwoPoints(KxPointXY& p1, KxPointXY& p2) {
    constexpr float kMinWidth = 1e-5f;
    const float dx = p1.x - p2.x;
    if (std::abs(dx) < kMinWidth) { // NaN: false
        k = 0.0f;
        b = 0.0f;
        return false;
    }
    const float slope = (p1.y - p2.y) / dx;
    b = (p1.x * p2.y - p2.x * p1.y) / dx;
    k = slope;
    return true;
}

bool detail::fitLine(const KxPointXY* begin, const KxPointXY* end, KxLine& line) {
    if (end - begin < 2) {
        return false;
    }
    float sxy = 0.0f;
    float sxx = 0.0f;
    float sx = 0.0f;
    float sy = 0.0f;
    const auto add = [&](const KxPointXY& p) {
        sxy += p.x * p.y;
        sxx += p.x * p.x;
        sx += p.x;
        sy += p.y;
    };
    for (const KxPointXY* p = begin; p != end; ++p) {
        add(*p);
    }
    float n = static_cast<float>(end - begin);
    if (sx == 0.0f) {
        // Deliberately the first point off the y axis counts twice: the quotients below need a sum other than 0.
        const KxPointXY* const offAxis = std::find_if(begin, end, [](const KxPointXY& p) { return p.x != 0.0f; });
        if (offAxis == end) {
            return false;
        }
        add(*offAxis);
        n += 1.0f;
    }
    line.b = (sxy - sy * sxx / sx) / (sx - sxx * n / sx);
    line.k = (sy - n * line.b) / sx;
    return true;
}

bool KxLine::calcFromPointCloud(KxPointCloud<KxPointXY>& cloud) {
    const KxPointXY* const begin = cloud.points.constData();
    return detail::fitLine(begin, begin + cloud.points.size(), *this);
}

bool KxLine::calcIntersection(KxLine& l1, KxLine& l2, KxPointXY& out) {
    if (l1.k == l2.k) { // NaN: false
        return false;
    }
    const float x = (l2.b - l1.b) / (l1.k - l2.k);
    const float y = x * l1.k + l1.b;
    out = KxPointXY(x, y);
    return true;
}

bool KxLine::calcIntersection(KxLine& other, KxPointXY& out) {
    return calcIntersection(*this, other, out);
}

float KxLine::calcAngle(KxLine& l1, KxLine& l2) {
    const double difference = std::atan(static_cast<double>(l1.k)) - std::atan(static_cast<double>(l2.k));
    return static_cast<float>(difference * 180.0 / detail::kPi);
}

float KxLine::calcAngle(KxLine& other) {
    return calcAngle(*this, other);
}

float KxLine::calcDistanceToPoint(KxLine& l, KxPointXY& p) {
    const float length = std::sqrt(l.k * l.k + 1.0f);
    if (length == 0.0f) {
        return kNaN;
    }
    return std::abs(l.k * p.x - p.y + l.b) / length;
}

float KxLine::calcDistanceToPoint(KxPointXY& p) {
    return calcDistanceToPoint(*this, p);
}

} // namespace KxMath
