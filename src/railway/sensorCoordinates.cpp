// From the plane of a sensor to the track frame.
#include "KxMath/KxMetro.h"

#include "lists/reserve.h"
#include "railway/sensorRotation.h"
#include "rounding/angles.h"

#include <cmath>

namespace KxMath {

namespace {

/// Appends the points of a profile, turned and moved, to a cloud. The sums are made in double precision from left to
/// right and rounded once.
void appendPoints(const KxProfile& profile, KxPointCloud<KxPointXYZ>& cloud, const detail::SensorRotation& rotation,
                  const _KxMETRO_SensorCoord_& coord, double rollX, double rollZ) {
    detail::reserve(cloud.points, cloud.points.size() + profile.points.size());
    for (const KxPointXY& p : profile.points) {
        const double px = static_cast<double>(p.x);
        const double py = static_cast<double>(p.y);
        const double x = rotation.uX * px + static_cast<double>(coord.x) + rotation.vX * py + rollX;
        const double y = rotation.uY * px + static_cast<double>(coord.y) + rotation.vY * py;
        const double z = rotation.uZ * px + static_cast<double>(coord.z) + rotation.vZ * py + rollZ;
        cloud.points.append(KxPointXYZ(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)));
    }
}

double fromDegrees(float angle) {
    return static_cast<double>(angle) * detail::kPi / 180.0;
}

} // namespace

void METRO_XYtoXYZ(KxProfile& profile, KxPointCloud<KxPointXYZ>& cloud, _KxMETRO_SensorCoord_& coord) {
    // Deliberately degrees here and radians in the other form.
    const detail::SensorRotation rotation(fromDegrees(coord.alpha), fromDegrees(coord.beta), fromDegrees(coord.gamma));
    appendPoints(profile, cloud, rotation, coord, 0.0, 0.0);
}

void METRO_XYtoXYZ(KxProfile& profile, KxPointCloud<KxPointXYZ>& cloud, _KxMETRO_SensorCoord_& coord, float radius,
                   float step, int index) {
    // Deliberately radians here and degrees in the other form.
    const detail::SensorRotation rotation(static_cast<double>(coord.alpha), static_cast<double>(coord.beta),
                                          static_cast<double>(coord.gamma));
    const double r = static_cast<double>(radius);
    const double s = static_cast<double>(step);
    const double n = static_cast<double>(index);
    const double turned = -(s / r) * n;
    const double rollX = r * std::cos(turned) - n * s;
    const double rollZ = r * std::sin(turned);
    appendPoints(profile, cloud, rotation, coord, rollX, rollZ);
}

} // namespace KxMath
