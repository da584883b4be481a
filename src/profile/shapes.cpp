// Shapes that are found in a band of heights: the weld bead and the circle.
#include "KxMath/KxProfile.h"

namespace KxMath {

bool KxProfile::detectWeld(KxLine& line, float* centerX) {
    constexpr double kBandHeight = 0.9;
    constexpr int kMinPoints = 5;
    KxProfile band(*this);
    band.calcRange();
    band.trimLower(static_cast<float>(static_cast<double>(band.maxY) - kBandHeight));
    if (band.size() < kMinPoints) {
        return false;
    }
    band.calcRange();
    line.b = band.minY; // deliberately only the intercept
    *centerX = (band.maxX - band.minX) * 0.5f + band.minX;
    return true;
}

bool KxProfile::detectCircle(KxCircle& circle) {
    constexpr float kBandHeight = 1.0f;
    KxProfile upper(*this);
    upper.calcRange();
    upper.trimLower(upper.minY + kBandHeight);
    return circle.calcFromPointCloud(upper);
}

} // namespace KxMath
