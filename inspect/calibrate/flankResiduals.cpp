// Residuals: distances of the points of a profile from the calibration object.
#include "inspect/calibrate/flankResiduals.h"

#include "inspect/base/points.h"
#include "inspect/calibrate/objectSurface.h"

#include <KxInspect/KxMathTypes.h>
#include <KxMath/KxMetro.h>

#include <algorithm>
#include <limits>
#include <numbers>

namespace KxInspect {

namespace {

/// Fills in flanks and residuals of the points. @return the root mean square
double findResiduals(const CalibrationTask& task, double obliqueFactor, ProfilePose& m) {
    const Placement placement = placementOf(task.placement);
    const double facing = std::sin(m.pose.beta * std::numbers::pi / 180.0) < 0.0 ? -1.0 : 1.0;
    const double up = placement.isMirrored ? -1.0 : 1.0;
    const std::vector<Point3> inTrack = detail::toTrack(m.points, withFoundY(m.pose, m.foundY));
    double squares = 0.0;
    int count = 0;
    for (std::size_t i = 0; i < m.points.size(); ++i) {
        const double x = static_cast<double>(inTrack[i].x) - m.moved[0];
        const double y = facing * (static_cast<double>(inTrack[i].y) - m.moved[1] - task.object.crestY);
        const double z = up * (static_cast<double>(inTrack[i].z) - m.moved[2]);
        CalibrationPoint& point = m.points[i];
        point.flank = point.isOutlier ? std::nullopt : detail::flankAt(task.object, x, z);
        if (point.flank) {
            point.residual = detail::planeOf(task.object, *point.flank, obliqueFactor).distance(x, y, z);
            squares += point.residual * point.residual;
            ++count;
        }
    }
    return std::sqrt(squares / count); // NaN without points on flanks
}

/// @param flanks their uncertainties
FlankResiduals summarized(const std::vector<CalibrationPoint>& points, FlankResiduals flanks) {
    for (std::size_t i = 0; i < flanks.size(); ++i) {
        FlankResidual sums{0, 0.0, 0.0, 0.0, flanks[i].uncertainty};
        for (const CalibrationPoint& point : points) {
            if (point.flank == i) {
                ++sums.points;
                sums.mean += point.residual;
                sums.rms += point.residual * point.residual;
                sums.largest = std::max(sums.largest, std::abs(point.residual));
            }
        }
        flanks[i] = {};
        if (sums.points > 0) {
            flanks[i] = {sums.points, sums.mean / sums.points, std::sqrt(sums.rms / sums.points), sums.largest,
                         sums.uncertainty};
        }
    }
    return flanks;
}

} // namespace

std::string flankName(std::size_t flank) {
    const std::string side = flank % 2 == 0 ? "before " : "behind ";
    const std::size_t ridge = flank / 2;
    return side + (ridge == detail::kObliqueRidge ? "oblique crest" : "crest " + std::to_string(ridge + 1));
}

bool FlankResidual::isOff() const {
    constexpr double kTolerance = 0.02; // mm, manufacturing tolerance of an object
    constexpr double kDeviations = 4.0;
    const double scatter = std::sqrt(std::max(0.0, rms * rms - mean * mean));
    return points > 0 && std::abs(mean) > kTolerance + kDeviations * scatter / std::sqrt(points);
}

std::vector<Point3> toTrack(const Profile& profile, const SensorPose& pose) {
    KxMath::KxProfile points = toKxProfile(profile);
    const auto value = [](double v) { return static_cast<float>(v); };
    KxMath::_KxMETRO_SensorCoord_ coord{
        value(pose.x), value(pose.y), value(pose.z), value(pose.alpha), value(pose.beta), value(pose.gamma), 0};
    KxMath::KxPointCloud<KxMath::KxPointXYZ> cloud;
    METRO_XYtoXYZ(points, cloud, coord);
    std::vector<Point3> result;
    result.reserve(static_cast<std::size_t>(cloud.points.size()));
    for (const KxMath::KxPointXYZ& p : std::as_const(cloud.points)) {
        result.push_back({p.x, p.y, p.z});
    }
    return result;
}

namespace detail {

std::vector<Point3> toTrack(const std::vector<CalibrationPoint>& points, const SensorPose& pose) {
    Profile profile;
    profile.points.reserve(points.size());
    for (const CalibrationPoint& p : points) {
        profile.points.push_back(p.point);
    }
    return KxInspect::toTrack(profile, pose);
}

void findResiduals(const CalibrationTask& task, ProfilePose& profile) {
    // The oblique ridge may have the slope along Z or across the ridge.
    const double across = std::hypot(1.0, task.object.obliqueness);
    ProfilePose other = profile;
    other.rms = KxInspect::findResiduals(task, across, other);
    profile.rms = KxInspect::findResiduals(task, 1.0, profile);
    if (other.rms < profile.rms) {
        profile = std::move(other);
    }
    profile.flanks = summarized(profile.points, profile.flanks);
}

FlankResiduals pooled(const std::vector<ProfilePose>& profiles) {
    FlankResiduals all;
    for (std::size_t i = 0; i < all.size(); ++i) {
        FlankResidual sums{0, 0.0, 0.0, 0.0, 0.0};
        for (const ProfilePose& m : profiles) {
            const FlankResidual& flank = m.flanks[i];
            if (flank.points > 0) {
                sums.points += flank.points;
                sums.mean += flank.points * flank.mean;
                sums.uncertainty = std::hypot(sums.uncertainty, flank.points * flank.uncertainty);
                sums.rms += flank.points * flank.rms * flank.rms;
                sums.largest = std::max(sums.largest, flank.largest);
            }
        }
        if (sums.points > 0) {
            all[i] = {sums.points, sums.mean / sums.points, std::sqrt(sums.rms / sums.points), sums.largest,
                      sums.uncertainty / sums.points};
        }
    }
    return all;
}

} // namespace detail

} // namespace KxInspect
