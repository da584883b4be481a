// The distance across a wheel pair, from the profiles of both wheels.
#include "inspect/train/wheelDistance.h"

#include "inspect/base/points.h"

#include <KxMath/KxMetro.h>

#include <cmath>
#include <limits>

namespace KxInspect::detail {

ChosenProfile chooseProfile(const FoundWheel& wheel, const KxMath::KxLine& level) {
    KxMath::KxBestWheelProfile best(level);
    KxMath::KxProfile profile;
    for (const PointList& points : wheel.profiles) {
        profile.points = points;
        best.add(profile);
    }
    return {best.number(), best.profile().points};
}

PointList fittedHalf(const PointList& points) {
    return copyOf(points, points.size() / 2);
}

float distanceOf(const ChosenProfile& first, const ChosenProfile& second, const KxMath::KxLine& firstReference,
                 const KxMath::KxLine& secondReference, float baseDistance) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    if (first.number == 0 || second.number == 0) {
        return kNone;
    }
    KxMath::KxProfile left;
    KxMath::KxProfile right;
    left.points = first.points;
    right.points = second.points;
    const float distance = KxMath::METRO_calcWheelsDist(left, right, firstReference, secondReference, baseDistance);
    return std::isfinite(distance) ? distance : kNone;
}

} // namespace KxInspect::detail
