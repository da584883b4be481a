// The bounding rectangle of a profile.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "rounding/bounds.h"

#include <cmath>

namespace KxMath {

using detail::kNaN;

void KxProfile::calcRect(float* width, float* height, float* angle, float angleStep) {
    if (!(angleStep > 0.0f)) {
        *width = *height = *angle = kNaN;
        return;
    }
    // The method turns a copy of the profile step by step and keeps the angle of the smallest width. Deliberately it
    // reads the width from the cached range, which a rotation leaves as it is: a known width is the smallest in the
    // first round, at the angle 0, and an unknown one never compares, so that the last round's angle stays.
    KxProfile work(*this);
    KxPointXY center;
    work.calcCenterPoint(center);
    const float cachedWidth = work.size_x();
    const double rounds = std::floor(180.0 / static_cast<double>(angleStep));
    float bestAngle = kNaN;
    if (rounds >= 1.0) {
        bestAngle = std::isnan(cachedWidth) ? static_cast<float>(rounds - 1.0) * angleStep : 0.0f;
    }
    // Turning the profile by that angle does not touch the cached range either.
    *width = size_x();
    *height = size_y();
    *angle = bestAngle;
}

void KxProfile::calcRect(KxPointCloud<KxPointXY>& corners, float* angle, float angleStep) {
    float width = kNaN;
    float height = kNaN;
    float bestAngle = kNaN;
    calcRect(&width, &height, &bestAngle, angleStep);
    if (angle != nullptr) {
        *angle = bestAngle;
    }
    KxPointXY center;
    calcCenterPoint(center);
    const float halfWidth = width * 0.5f;
    const float halfHeight = height * 0.5f;
    KxProfile rect;
    rect.points = detail::listOf({KxPointXY(center.x - halfWidth, center.y - halfHeight),
                                  KxPointXY(center.x - halfWidth, center.y + halfHeight),
                                  KxPointXY(center.x + halfWidth, center.y + halfHeight),
                                  KxPointXY(center.x + halfWidth, center.y - halfHeight)});
    rect.rotateFixed(bestAngle, center);
    corners = rect;
}

} // namespace KxMath
