// Planes in space.
#include "KxMath/KxPrimitives.h"

#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

using detail::kNaN;

KxPlane::KxPlane() : a(kNaN), b(kNaN), c(kNaN), d(kNaN) {}

void KxPlane::calcFromPoints(KxPointXYZ& p1, KxPointXYZ& p2, KxPointXYZ& p3) {
    const double x1 = static_cast<double>(p1.x);
    const double y1 = static_cast<double>(p1.y);
    const double z1 = static_cast<double>(p1.z);
    const double x2 = static_cast<double>(p2.x);
    const double y2 = static_cast<double>(p2.y);
    const double z2 = static_cast<double>(p2.z);
    const double x3 = static_cast<double>(p3.x);
    const double y3 = static_cast<double>(p3.y);
    const double z3 = static_cast<double>(p3.z);
    a = static_cast<float>((z2 - z3) * y1 + (z3 - z1) * y2 + (z1 - z2) * y3);
    b = static_cast<float>((x2 - x3) * z1 + (x3 - x1) * z2 + (x1 - x2) * z3);
    c = static_cast<float>((y3 - y1) * x2 + (y2 - y3) * x1 + (y1 - y2) * x3);
    d = static_cast<float>(-((y3 * z1 - y1 * z3) * x2 + (y2 * z3 - z2 * y3) * x1 + (z2 * y1 - y2 * z1) * x3));
}

float KxPlane::calcDistance(KxPlane& pl, KxPointXYZ& p) {
    const float length = std::sqrt(pl.a * pl.a + pl.b * pl.b + pl.c * pl.c);
    if (length == 0.0f) {
        return kNaN;
    }
    return std::abs(pl.a * p.x + pl.b * p.y + pl.c * p.z + pl.d) / length;
}

float KxPlane::calcDistance(KxPointXYZ& p) {
    return calcDistance(*this, p);
}

} // namespace KxMath
