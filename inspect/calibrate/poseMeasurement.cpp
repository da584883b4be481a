// The pose of a sensor from one profile of the calibration object, and how well the flanks fit.
#include "inspect/calibrate/poseMeasurement.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kxtool {

namespace {

using KxMath::_KxMETRO_DbgData_;
using KxMath::_KxMETRO_SensorCoord_;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxProfile;
using kxsim::CalibrationObject;

constexpr double kDegrees = 180.0 / std::numbers::pi;

bool isMirrored(int placement) {
    return placement == 3 || placement == 4;
}

bool calibrate(const QList<KxPointXY>& profile, const CalibrationTask& task, _KxMETRO_SensorCoord_& coord,
               _KxMETRO_DbgData_& dbg) {
    const CalibrationObject& object = task.object;
    KxProfile copy;
    copy.points = profile;
    coord = {};
    coord.y = task.sensorY.value_or(0.0f);
    coord.position = task.placement;
    return METRO_calcAnglesCoord(copy, static_cast<float>(object.p1()), static_cast<float>(object.p2()),
                                 static_cast<float>(object.p3()), static_cast<float>(object.p4()), coord, {}, &dbg);
}

PoseValues valuesOf(const _KxMETRO_SensorCoord_& c) {
    const auto degrees = [](float radians) { return static_cast<double>(radians) * kDegrees; };
    return {static_cast<double>(c.x), static_cast<double>(c.y), static_cast<double>(c.z),
            degrees(c.alpha),         degrees(c.beta),          degrees(c.gamma)};
}

/// What could be wrong when no pose was found: too little in view, or an object or placement that the other hand fits.
QString explainFailure(const QList<KxPointXY>& profile, const CalibrationTask& task, int apexCount) {
    constexpr int kLeastApexes = 5; // the crests at both ends may be added to them
    if (apexCount < kLeastApexes) {
        return QStringLiteral("shows %1 apexes; crest, valley, crest ... of the object are 7").arg(apexCount);
    }
    const int mirrored[] = {-1, 3, 4, 1, 2, 4};
    const bool isCoded = task.placement >= 1 && task.placement <= 5;
    const int other = isCoded ? mirrored[task.placement] : 3;
    for (const int placement : {task.placement, other}) {
        for (const double sign : {1.0, -1.0}) {
            CalibrationTask attempt = task;
            attempt.placement = placement;
            attempt.object.obliqueness *= sign;
            _KxMETRO_SensorCoord_ coord;
            _KxMETRO_DbgData_ dbg;
            if (calibrate(profile, attempt, coord, dbg)) {
                return QStringLiteral("fits no pose of the object; it would with --position %1 --oblique %2")
                    .arg(placement)
                    .arg(attempt.object.obliqueness);
            }
        }
    }
    return QStringLiteral("fits no pose of the object: it has another pitch or slope, ridges are hidden, or the noise "
                          "leaves the pose too uncertain");
}

/// Tells the flank below a point, as the object sees it: z upwards from the middle straight crest.
int flankAt(const CalibrationObject& object, double x, double z) {
    constexpr double kMargin = 0.04; // of the width, left out at crests and valleys
    const double p = object.pitch;
    const double tx = object.obliqueness * x;
    const std::array ends = {-1.5 * p, -p, -0.5 * p, 0.0, 0.5 * p, p, 1.75 * p + 0.5 * tx, 2.5 * p + tx, 3.25 * p + tx};
    for (int flank = 0; flank < kFlankCount; ++flank) {
        const double from = ends[static_cast<size_t>(flank)];
        const double to = ends[static_cast<size_t>(flank) + 1];
        const double margin = kMargin * (to - from);
        if (z >= from + margin && z <= to - margin) {
            return flank;
        }
    }
    return -1;
}

/// The depth of a flank behind the crests.
/// @param obliqueFactor slope of the oblique ridge along Z over that of the others
double depthAt(const CalibrationObject& object, int flank, double x, double z, double obliqueFactor) {
    constexpr int kObliqueRidge = 3;
    const int ridge = flank / 2;
    if (ridge == kObliqueRidge) {
        return obliqueFactor * object.slope * std::abs(z - 2.5 * object.pitch - object.obliqueness * x);
    }
    return object.slope * std::abs(z - (ridge - 1) * object.pitch);
}

/// Fills in flanks and residuals of the points. @return the root mean square
double findResiduals(const CalibrationTask& task, double obliqueFactor, PoseMeasurement& m) {
    const double facing = std::sin(m.pose[4] / kDegrees) < 0.0 ? -1.0 : 1.0;
    const double up = isMirrored(task.placement) ? -1.0 : 1.0;
    const auto cloud = toTrack(m.points, m.pose);
    double sum = 0.0;
    int count = 0;
    for (size_t i = 0; i < m.points.size(); ++i) {
        const KxPointXYZ& p = cloud.points.at(static_cast<qsizetype>(i));
        const double x = static_cast<double>(p.x);
        const double z = up * static_cast<double>(p.z);
        MeasuredPoint& point = m.points[i];
        point.flank = flankAt(task.object, x, z);
        if (point.flank >= 0) {
            const double depth = depthAt(task.object, point.flank, x, z, obliqueFactor);
            point.residual = facing * (static_cast<double>(p.y) - task.object.crestY) - depth;
            sum += point.residual;
            ++count;
        }
    }
    const double shift = count > 0 ? sum / count : 0.0;
    m.foundY = task.findsY() ? m.pose[1] : m.pose[1] - facing * shift;
    double squares = 0.0;
    for (MeasuredPoint& point : m.points) {
        if (point.flank >= 0) {
            point.residual -= task.findsY() ? 0.0 : shift; // y is not the calibration's
            squares += point.residual * point.residual;
        }
    }
    return count > 0 ? std::sqrt(squares / count) : 0.0;
}

void summarize(PoseMeasurement& m) {
    for (const MeasuredPoint& point : m.points) {
        if (point.flank < 0) {
            continue;
        }
        FlankResidual& flank = m.flanks[static_cast<size_t>(point.flank)];
        ++flank.points;
        flank.mean += point.residual;
        flank.rms += point.residual * point.residual;
        flank.largest = std::max(flank.largest, std::abs(point.residual));
    }
    for (FlankResidual& flank : m.flanks) {
        if (flank.points > 0) {
            flank.mean /= flank.points;
            flank.rms = std::sqrt(flank.rms / flank.points);
        }
    }
}

/// What contradicts a pose that was found, empty for nothing.
QString contradiction(const CalibrationTask& task, const PoseMeasurement& m) {
    if (!task.sensorY) {
        return {};
    }
    const bool looksUp = std::sin(m.pose[4] / kDegrees) > 0.0;
    const bool standsBelow = static_cast<double>(*task.sensorY) < task.object.crestY;
    if (looksUp != standsBelow) {
        return QStringLiteral(
                   "fits only a sensor on the other side of the crests than --sensor-y tells: gamma is taken to be "
                   "%1, is the sensor turned the other way about its axis?")
            .arg(isMirrored(task.placement) ? QStringLiteral("180 to 360 degrees")
                                            : QStringLiteral("0 to 180 degrees"));
    }
    return {};
}

} // namespace

QString flankName(int flank) {
    const QString side = flank % 2 == 0 ? QStringLiteral("before") : QStringLiteral("behind");
    const int ridge = flank / 2 + 1;
    return ridge == 4 ? side + QStringLiteral(" oblique crest") : side + QStringLiteral(" crest %1").arg(ridge);
}

bool FlankResidual::isOff() const {
    constexpr double kTolerance = 0.02; // mm, that an object may be off
    constexpr double kDeviations = 4.0;
    const double scatter = std::sqrt(std::max(0.0, rms * rms - mean * mean));
    return points > 0 && std::abs(mean) > kTolerance + kDeviations * scatter / std::sqrt(points);
}

KxMath::KxPointCloud<KxPointXYZ> toTrack(const std::vector<MeasuredPoint>& points, const PoseValues& pose) {
    KxProfile profile;
    for (const MeasuredPoint& p : points) {
        profile.points.append(p.point);
    }
    const auto value = [&](size_t i) { return static_cast<float>(pose[i]); };
    _KxMETRO_SensorCoord_ coord{value(0), value(1), value(2), value(3), value(4), value(5), 0};
    KxMath::KxPointCloud<KxPointXYZ> cloud;
    METRO_XYtoXYZ(profile, cloud, coord);
    return cloud;
}

PoseMeasurement measurePose(const QList<KxPointXY>& profile, const CalibrationTask& task) {
    PoseMeasurement m;
    for (const KxPointXY& p : profile) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            m.points.push_back({p, -1, 0.0});
        }
    }
    _KxMETRO_SensorCoord_ coord;
    _KxMETRO_DbgData_ dbg;
    if (!calibrate(profile, task, coord, dbg)) {
        m.fault = explainFailure(profile, task, dbg.apexCount);
        return m;
    }
    m.pose = valuesOf(coord);
    m.angleDeviation = static_cast<double>(dbg.value1);
    m.fault = contradiction(task, m);
    if (!m.fault.isEmpty()) {
        return m;
    }
    // The oblique ridge may have the slope along Z, or across itself.
    const double across = std::hypot(1.0, task.object.obliqueness);
    const double rmsAcross = findResiduals(task, across, m);
    m.rms = findResiduals(task, 1.0, m);
    if (rmsAcross < m.rms) {
        m.rms = findResiduals(task, across, m);
    }
    summarize(m);
    return m;
}

std::array<FlankResidual, kFlankCount> pooled(const std::vector<PoseMeasurement>& measurements) {
    std::array<FlankResidual, kFlankCount> all;
    for (size_t i = 0; i < all.size(); ++i) {
        double squares = 0.0;
        for (const PoseMeasurement& m : measurements) {
            const FlankResidual& flank = m.flanks[i];
            all[i].points += flank.points;
            all[i].mean += flank.points * flank.mean;
            squares += flank.points * flank.rms * flank.rms;
            all[i].largest = std::max(all[i].largest, flank.largest);
        }
        if (all[i].points > 0) {
            all[i].mean /= all[i].points;
            all[i].rms = std::sqrt(squares / all[i].points);
        }
    }
    return all;
}

} // namespace kxtool
