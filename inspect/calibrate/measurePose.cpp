// The pose of a sensor from one profile of the calibration object.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/calibrate/flankResiduals.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/KxMathTypes.h>
#include <KxMath/KxMetro.h>

#include <QtCore/QString>

#include <numbers>

namespace KxInspect {

namespace {

using KxMath::_KxMETRO_DbgData_;
using KxMath::_KxMETRO_SensorCoord_;

constexpr double kDegrees = 180.0 / std::numbers::pi;

void check(const CalibrationTask& task) {
    const auto require = [](bool isGood, const char* key, const char* what) {
        if (!isGood) {
            detail::fail(ErrorKind::BadArgument, {"argument", {}, key},
                         QStringLiteral("%1 %2").arg(QLatin1String(key), QLatin1String(what)));
        }
    };
    const CalibrationObject& object = task.object;
    require(object.pitch > 0.0 && std::isfinite(object.pitch), "pitch", "must be above 0 and finite");
    require(object.slope > 0.0 && std::isfinite(object.slope), "slope", "must be above 0 and finite");
    require(object.obliqueness != 0.0 && std::isfinite(object.obliqueness), "obliqueness",
            "must be finite and not 0: x could not be found");
    require(std::isfinite(object.crestY), "crestY", "must be finite");
    require(!task.sensorY || std::isfinite(*task.sensorY), "sensorY", "must be finite");
}

bool calibrate(const KxMath::KxProfile& profile, const CalibrationTask& task, _KxMETRO_SensorCoord_& coord,
               _KxMETRO_DbgData_& dbg) {
    const CalibrationObject& object = task.object;
    KxMath::KxProfile copy;
    copy.points = profile.points;
    coord = {};
    coord.y = task.sensorY.value_or(0.0f);
    coord.position = task.placement;
    return METRO_calcAnglesCoord(copy, static_cast<float>(object.p1()), static_cast<float>(object.p2()),
                                 static_cast<float>(object.p3()), static_cast<float>(object.p4()), coord, {}, &dbg);
}

SensorPose poseOf(const _KxMETRO_SensorCoord_& c) {
    const auto degrees = [](float radians) { return static_cast<double>(radians) * kDegrees; };
    return {static_cast<double>(c.x), static_cast<double>(c.y), static_cast<double>(c.z),
            degrees(c.alpha),         degrees(c.beta),          degrees(c.gamma)};
}

/// The placement that sees the mirror image of the object.
int otherHand(int code) {
    const Placement own = placementOf(code);
    for (const int other : {1, 2, 3, 4}) {
        const Placement placement = placementOf(other);
        if (placement.isMirrored != own.isMirrored && placement.isTurned == own.isTurned) {
            return other;
        }
    }
    return code;
}

/// Why no pose was found: too little in view, or the mirror image of the object or placement fits.
QString explainFailure(const KxMath::KxProfile& profile, const CalibrationTask& task, int apexCount,
                       const CalibrationTerms& terms) {
    constexpr int kLeastApexes = 5; // the outer crests may add two
    if (apexCount < kLeastApexes) {
        return QStringLiteral("shows %1 apexes; crest, valley, crest ... of the object are 7").arg(apexCount);
    }
    for (const int placement : {task.placement, otherHand(task.placement)}) {
        for (const double sign : {1.0, -1.0}) {
            CalibrationTask attempt = task;
            attempt.placement = placement;
            attempt.object.obliqueness *= sign;
            _KxMETRO_SensorCoord_ coord;
            _KxMETRO_DbgData_ dbg;
            if (calibrate(profile, attempt, coord, dbg)) {
                return QStringLiteral("fits no pose of the object; it would with %1 %2 %3 %4")
                    .arg(detail::toQt(terms.placement), QString::number(placement), detail::toQt(terms.obliqueness),
                         QString::number(attempt.object.obliqueness));
            }
        }
    }
    return QStringLiteral("fits no pose of the object: it has another pitch or slope, ridges are hidden, or the noise "
                          "leaves the pose too uncertain");
}

/// A contradiction in a pose that was found; empty without one.
QString contradiction(const CalibrationTask& task, const SensorPose& pose, const CalibrationTerms& terms) {
    if (!task.sensorY) {
        return {};
    }
    const bool looksUp = std::sin(pose.beta / kDegrees) > 0.0;
    const bool standsBelow = static_cast<double>(*task.sensorY) < task.object.crestY;
    if (looksUp == standsBelow) {
        return {};
    }
    const bool isMirrored = placementOf(task.placement).isMirrored;
    return QStringLiteral("fits only a sensor on the other side of the crests than %1 tells: gamma is taken to be %2, "
                          "is the sensor turned the other way about its axis?")
        .arg(detail::toQt(terms.sensorY),
             isMirrored ? QStringLiteral("180 to 360 degrees") : QStringLiteral("0 to 180 degrees"));
}

} // namespace

ProfilePose measurePose(const Profile& profile, const CalibrationTask& task, const CalibrationTerms& terms) {
    check(task);
    ProfilePose result;
    for (const Point& p : profile.points) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            result.points.push_back({p});
        }
    }
    const KxMath::KxProfile points = toKxProfile(profile);
    _KxMETRO_SensorCoord_ coord;
    _KxMETRO_DbgData_ dbg;
    if (!calibrate(points, task, coord, dbg)) {
        result.fault = explainFailure(points, task, dbg.apexCount, terms).toStdString();
        return result;
    }
    const SensorPose pose = poseOf(coord);
    result.fault = contradiction(task, pose, terms).toStdString();
    if (!result.hasPose()) {
        return result;
    }
    result.pose = pose;
    if (!placementOf(task.placement).findsY && !task.sensorY) {
        result.pose.y = std::numeric_limits<double>::quiet_NaN();
    }
    result.angleDeviation = static_cast<double>(dbg.value1);
    detail::findResiduals(task, result);
    return result;
}

} // namespace KxInspect
