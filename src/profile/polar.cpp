// Polar form and rotations of profiles.
#include "KxMath/KxProfile.h"

#include "numeric/angles.h"

namespace KxMath {

void KxProfile::toPolar() {
    for (KxPointXY& p : points) {
        const float radius = detail::polarRadius(p.x, p.y);
        const float angle = detail::polarAngleDeg(p.x, p.y);
        p = KxPointXY(radius, angle);
    }
}

void KxProfile::toEvklid() {
    for (KxPointXY& p : points) {
        const float rad = detail::toRadians(p.y);
        const float x = detail::cosF(rad) * p.x;
        const float y = detail::sinF(rad) * p.x;
        p = KxPointXY(x, y);
    }
}

void KxProfile::rotatePolar(float angle) {
    if (angle == 0.0f) {
        return;
    }
    for (KxPointXY& p : points) {
        p.y += angle;
    }
}

void KxProfile::rotateEvklid(float angle) {
    if (angle == 0.0f) {
        return;
    }
    toPolar();
    rotatePolar(angle);
    toEvklid();
}

void KxProfile::rotateFixed(float angle, KxPointXY& center) {
    const KxPointXY fixed = center; // also where the centre is a point of this profile
    shift(-fixed.x, -fixed.y, 0.0f);
    rotateEvklid(angle);
    shift(fixed.x, fixed.y, 0.0f);
}

} // namespace KxMath
