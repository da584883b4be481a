// The profiles of a wheel in the track frame.
#include "inspect/wheelset/trackPoints.h"

#include <KxMath/KxMetro.h>

#include <cmath>

namespace KxInspect::detail {

namespace {

using Points = QList<KxMath::KxPointXY>;

/// The extent of the neighbours that one point replaces. The arc of a wheel with the smallest radius, 12 mm at the flange,
/// is 0.003 mm off its chord over this length, so that means of its points are 0.001 mm off.
constexpr float kReach = 0.5f; // mm

/// Appends the means of neighbours.
void appendMeans(const Points& points, KxMath::KxProfile& means) {
    float x = 0.0f; // from the first point of a mean, for the sake of rounding
    float y = 0.0f;
    int count = 0;
    KxMath::KxPointXY first;
    const auto finish = [&] {
        if (count > 0) {
            const auto n = static_cast<float>(count);
            means.points.append(KxMath::KxPointXY(first.x + x / n, first.y + y / n));
        }
        count = 0;
    };
    for (const KxMath::KxPointXY& p : points) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) {
            continue;
        }
        const float dx = p.x - first.x;
        const float dy = p.y - first.y;
        if (count == 0 || std::abs(dx) > kReach || std::abs(dy) > kReach) {
            finish();
            first = p;
            x = y = 0.0f;
        } else {
            x += dx;
            y += dy;
        }
        ++count;
    }
    finish();
}

KxMath::_KxMETRO_SensorCoord_ poseOf(const SensorSettings& sensor) {
    const auto value = [](double v) { return static_cast<float>(v); };
    const SensorOrigin& origin = *sensor.origin;
    const SensorAngles& angles = *sensor.angles;
    return {value(origin.x),
            value(origin.y),
            value(origin.z),
            value(angles.alpha),
            value(angles.beta),
            value(angles.gamma),
            0};
}

} // namespace

std::vector<TrackPoint> trackPointsOf(const SensorProfiles& seen) {
    const double outwards = *seen.sensor->side == TrackSide::Left ? 1.0 : -1.0;
    KxMath::_KxMETRO_SensorCoord_ pose = poseOf(*seen.sensor);
    std::vector<TrackPoint> points;
    KxMath::KxProfile means;
    KxMath::KxPointCloud<KxMath::KxPointXYZ> cloud;
    for (std::size_t i = 0; i < seen.profiles->size(); ++i) {
        means.points.clear();
        cloud.points.clear();
        appendMeans((*seen.profiles)[i], means);
        METRO_XYtoXYZ(means, cloud, pose);
        const double travel = static_cast<double>((*seen.places)[i]);
        for (const KxMath::KxPointXYZ& p : std::as_const(cloud.points)) {
            points.push_back({static_cast<double>(p.x) - travel, outwards * static_cast<double>(p.y),
                              static_cast<double>(p.z), static_cast<int>(i)});
        }
    }
    return points;
}

} // namespace KxInspect::detail
