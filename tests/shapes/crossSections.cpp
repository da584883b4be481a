// Cross-sections of wheels and rails in closed form.
#include "shapes/crossSections.h"

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

constexpr float kSpacing = 0.05f;
constexpr float kRimWidth = 135.0f;
constexpr float kTapeCircle = 70.0f;
constexpr float kHeadWidth = 64.0f;

/// The flange: up from the back, over the tip, and straight down towards the tread.
float flangeY(float x) {
    constexpr float kTip = 28.0f;
    constexpr float kTipX = 20.0f;
    if (x < kTipX) {
        return kTip - (kTipX - x) * (kTipX - x) * 0.04f;
    }
    return kTip - (x - kTipX) * 1.6f;
}

} // namespace

void appendConicalWheel(KxMath::KxProfile& wheel, float slope) {
    for (int i = 0; static_cast<float>(i) * kSpacing < kRimWidth; ++i) {
        const float x = static_cast<float>(i) * kSpacing;
        const float tread = (kTapeCircle - x) * slope;
        wheel.points.append(KxMath::KxPointXY(x, std::max(flangeY(x), tread)));
    }
}

void appendRoundRail(KxMath::KxProfile& rail, float radius) {
    for (int i = 0; static_cast<float>(i) * kSpacing < kHeadWidth; ++i) {
        const float x = static_cast<float>(i) * kSpacing;
        const float d = x - kHeadWidth * 0.5f;
        rail.points.append(KxMath::KxPointXY(x, radius - std::sqrt(radius * radius - d * d)));
    }
}

} // namespace kxtool
