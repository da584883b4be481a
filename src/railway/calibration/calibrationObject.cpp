// The calibration object: roof ridges along X.
#include "railway/calibration/calibrationObject.h"

#include <cmath>

namespace KxMath::detail {

bool CalibrationObject::isValid() const {
    return twoPitches > 0.0 && depth > 0.0 && obliqueness != 0.0 && std::isfinite(twoPitches) && std::isfinite(depth) &&
           std::isfinite(obliqueness); // NaN: false
}

double CalibrationObject::depthAt(int ridge, double x, double z) const {
    constexpr int kOblique = 3;
    const double slope = 2.0 * depth / pitch();
    if (ridge == kOblique) {
        return slope * obliqueSlopeFactor * std::abs(z - obliqueCrestZ() - obliqueness * x);
    }
    return slope * std::abs(z - pitch() * (ridge - 1));
}

} // namespace KxMath::detail
