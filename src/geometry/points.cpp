// Distances between points.
#include "KxMath/KxPoints.h"

#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

bool KxPointXY::isNull() {
    return std::isnan(x) || std::isnan(y);
}

float KxPointXY::calcDistance(KxPointXY a, KxPointXY b) {
    const float dx = b.x - a.x;
    const float dy = b.y - a.y;
    const float sum = dx * dx + dy * dy;
    return std::sqrt(sum);
}

float KxPointXY::calcDistance(KxPointXY p) {
    return calcDistance(*this, p);
}

float KxPointXYZ::calcDistance(KxPointXYZ a, KxPointXYZ b) {
    if (std::isnan(a.x) || std::isnan(a.y) || std::isnan(a.z) || std::isnan(b.x) || std::isnan(b.y) ||
        std::isnan(b.z)) {
        return detail::kNaN; // also where infinities would make another NaN
    }
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    const float dz = a.z - b.z;
    const float sum = dy * dy + dx * dx + dz * dz;
    return std::sqrt(sum);
}

float KxPointXYZ::calcDistance(KxPointXYZ p) {
    return calcDistance(*this, p);
}

} // namespace KxMath
