// The calibration object: roof ridges along X.
#include "railway/calibration/calibrationObject.h"

#include <cmath>

namespace KxMath::detail {

bool CalibrationObject::isValid() const {
    return twoPitches > 0.0 && depth > 0.0 && obliqueness != 0.0 && std::isfinite(twoPitches) && std::isfinite(depth) &&
           std::isfinite(obliqueness); // NaN: false
}

double CalibrationObject::depthAt(int ridge, bool isBehind, double x, double z) const {
    constexpr int kOblique = 3;
    const double slope = 2.0 * depth / pitch();
    const double side = isBehind ? 1.0 : -1.0;
    if (ridge == kOblique) {
        return side * slope * obliqueSlopeFactor * (z - obliqueCrestZ() - obliqueness * x);
    }
    return side * slope * (z - pitch() * (ridge - 1));
}

} // namespace KxMath::detail
