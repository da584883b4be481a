// The pose of a sensor from several profiles of the calibration object.
#include "inspect/base/paths.h"
#include "inspect/calibrate/flankResiduals.h"
#include "inspect/calibrate/poseAverage.h"

#include <KxInspect/Calibration.h>
#include <KxMath/KxMathVersion.h>

namespace KxInspect {

namespace {

/// A warning about y; empty without one.
QString warningAboutY(const CalibrationResult& result, const CalibrationTerms& terms) {
    constexpr double kMaxDifference = 1.0; // mm
    const double foundY = result.average.foundY;
    if (!result.hasY()) {
        return QStringLiteral("position %1 does not find y; tell it with %2 (by the object it is %3 mm)")
            .arg(QString::number(result.task.placement), detail::toQt(terms.sensorY), QString::number(foundY, 'f', 2));
    }
    const bool isGiven = !placementOf(result.task.placement).findsY;
    if (isGiven && std::abs(static_cast<double>(*result.task.sensorY) - foundY) > kMaxDifference) {
        return QStringLiteral("%1 and %2 do not fit together: by the object y is %3 mm")
            .arg(detail::toQt(terms.sensorY), detail::toQt(terms.crestY), QString::number(foundY, 'f', 2));
    }
    return {};
}

} // namespace

CalibrationResult measurePoses(const std::vector<NamedProfile>& profiles, const CalibrationTask& task,
                               const Progress& progress, const CalibrationTerms& terms) {
    CalibrationResult result;
    result.version = KxMath_GetVersionString();
    result.task = task;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        if (progress) {
            progress("calibrating", static_cast<double>(i) / static_cast<double>(profiles.size()));
        }
        ProfilePose pose = measurePose(profiles[i].profile, task, terms);
        pose.name = profiles[i].name;
        if (!pose.hasPose() && profiles.size() > 1) {
            result.warnings.push_back("'" + pose.name + "' " + pose.fault);
        }
        result.profiles.push_back(std::move(pose));
    }
    result.average = detail::averagePoses(result.profiles);
    result.flanks = detail::pooled(result.profiles);
    if (result.hasPose()) {
        if (const QString warning = warningAboutY(result, terms); !warning.isEmpty()) {
            result.warnings.push_back(warning.toStdString());
        }
    }
    return result;
}

} // namespace KxInspect
