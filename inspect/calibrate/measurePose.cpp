// The pose of a sensor from one profile of the calibration object.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/calibrate/flankResiduals.h"
#include "inspect/calibrate/poseAverage.h"
#include "inspect/calibrate/sighting.h"

#include <KxInspect/Calibration.h>

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

[[noreturn]] void failAbout(const std::string& role, const std::string& key, const QString& reason) {
    detail::fail(ErrorKind::BadArgument, {role, {}, key}, reason);
}

/// The side by the task, where it is given twice.
void checkSide(const CalibrationTask& task, const CalibrationTerms& terms) {
    CalibrationTask byY = task;
    byY.side.reset();
    if (task.side && task.sensorY && task.side != byY.givenSide()) {
        failAbout({}, "side",
                  QStringLiteral("%1 and %2 contradict each other: the crests are at y = %3 mm")
                      .arg(detail::toQt(terms.side), detail::toQt(terms.sensorY), QString::number(task.object.crestY)));
    }
}

/// The place of the oblique crest, which the placement says as well.
void checkObliqueCrest(const CalibrationTask& task, const CalibrationTerms& terms) {
    const auto byPlacement = placementOf(task.placement).isMirrored ? ObliqueCrest::Below : ObliqueCrest::Above;
    if (task.obliqueCrest.value_or(byPlacement) != byPlacement) {
        failAbout(
            {}, "obliqueCrest",
            QStringLiteral("%1 and %2 contradict each other: at placement %3 the oblique crest is %4 the straight ones")
                .arg(detail::toQt(terms.obliqueCrest), detail::toQt(terms.placement), QString::number(task.placement),
                     detail::placeName(byPlacement)));
    }
}

} // namespace

void checkCalibrationTask(const CalibrationTask& task, const std::vector<std::array<double, 3>>& moves,
                          const CalibrationTerms& terms) {
    const auto require = [](bool isGood, const char* key, const char* what) {
        if (!isGood) {
            failAbout("argument", key, QStringLiteral("%1 %2").arg(QLatin1String(key), QLatin1String(what)));
        }
    };
    const CalibrationObject& object = task.object;
    require(object.pitch > 0.0 && std::isfinite(object.pitch), "pitch", "must be above 0 and finite");
    require(object.slope > 0.0 && std::isfinite(object.slope), "slope", "must be above 0 and finite");
    require(object.obliqueness != 0.0 && std::isfinite(object.obliqueness), "obliqueness",
            "must be finite and not 0: x could not be found");
    const ObjectError& error = task.objectError;
    for (const double part : {error.pitch, error.slope, error.obliqueness}) {
        require(part >= 0.0 && std::isfinite(part), "objectError", "must be at least 0 and finite");
    }
    require(error.pitch < object.pitch && error.slope < object.slope, "objectError",
            "must be less than pitch and slope");
    require(std::isfinite(object.crestY), "crestY", "must be finite");
    require(!task.sensorY || std::isfinite(*task.sensorY), "sensorY", "must be finite");
    for (const auto& moved : moves) {
        const bool isFinite = std::all_of(moved.begin(), moved.end(), [](double v) { return std::isfinite(v); });
        require(isFinite, "moved", "must be finite");
    }
    checkSide(task, terms);
    checkObliqueCrest(task, terms);
    const bool differAlongY =
        std::any_of(moves.begin(), moves.end(), [&](const auto& moved) { return moved[1] != moves.front()[1]; });
    if (!task.givenSide() && !differAlongY) {
        failAbout({}, "side",
                  QStringLiteral("%1 or %2 is needed: a profile looks the same to a sensor on either side of the "
                                 "crests (or give shots with the object moved along y, with %3)")
                      .arg(detail::toQt(terms.sensorY), detail::toQt(terms.side), detail::toQt(terms.moved)));
    }
}

namespace detail {

ProfilePose poseOf(const NamedProfile& profile, const Sighting& sighting, const Axes& axes, const CalibrationTask& task,
                   const CalibrationTerms& terms) {
    ProfilePose result;
    result.name = profile.name;
    result.moved = profile.moved;
    for (const Point& p : profile.profile.points) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            result.points.push_back({p});
        }
    }
    QString fault = sighting.fit ? axes.fault : sighting.fault;
    if (fault.isEmpty()) {
        fault = placementFault(sighting, axes, task, terms);
    }
    result.fault = fault.toStdString();
    if (!result.hasPose()) {
        return result;
    }
    result.pose = trackPose(sighting, axes.signs, task);
    result.foundY = result.pose.y;
    result.uncertainty = uncertaintyOf(*sighting.fit);
    result.byObject = uncertaintyByObject(*sighting.fit);
    const SensorPose& u = result.uncertainty;
    result.angleDeviation = std::max({u.alpha, u.beta, u.gamma}) / kNormal95;
    if (!placementOf(task.placement).findsY) {
        result.pose.y = task.sensorY ? static_cast<double>(*task.sensorY) : std::numeric_limits<double>::quiet_NaN();
    }
    constexpr double kRounding = 3e-4; // mm, more than single precision takes off a place and an angle at 1 m
    for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
        result.flanks[flank].uncertainty = std::hypot(kNormal95 * sighting.fit->flankDeviations[flank], kRounding);
    }
    for (std::size_t i = 0; i < sighting.order.size(); ++i) {
        result.points[sighting.order[i]].isOutlier = sighting.fit->areOutliers[i];
        result.outliers += sighting.fit->areOutliers[i] ? 1 : 0;
    }
    findResiduals(task, result);
    return result;
}

} // namespace detail

ProfilePose measurePose(const Profile& profile, const CalibrationTask& task, const CalibrationTerms& terms) {
    checkCalibrationTask(task, {}, terms);
    const NamedProfile named{{}, profile};
    const std::vector<detail::Sighting> sightings = {detail::sight(named, task)};
    return detail::poseOf(named, sightings.front(), detail::axesOf(sightings, task, terms), task, terms);
}

} // namespace KxInspect
