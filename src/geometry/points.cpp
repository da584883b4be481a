// Distances between points.
#include "KxMath/KxPoints.h"

#include "geometry/squareOfDistance.h"
#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

bool KxPointXY::isNull() {
    return std::isnan(x) || std::isnan(y);
}

float KxPointXY::calcDistance(KxPointXY a, KxPointXY b) {
    return std::sqrt(detail::squareOfDistance(b.x - a.x, b.y - a.y));
}

float KxPointXY::calcDistance(KxPointXY p) {
    return calcDistance(*this, p);
}

float KxPointXYZ::calcDistance(KxPointXYZ a, KxPointXYZ b) {
    if (std::isnan(a.x) || std::isnan(a.y) || std::isnan(a.z) || std::isnan(b.x) || std::isnan(b.y) ||
        std::isnan(b.z)) {
        return detail::kNaN; // also where infinities would make another NaN
    }
    return std::sqrt(detail::squareOfDistance(a.x - b.x, a.y - b.y, a.z - b.z));
}

float KxPointXYZ::calcDistance(KxPointXYZ p) {
    return calcDistance(*this, p);
}

} // namespace KxMath
