// The pose of a sensor from several profiles of the calibration object.
#include "inspect/base/paths.h"
#include "inspect/calibrate/flankResiduals.h"
#include "inspect/calibrate/poseAverage.h"
#include "inspect/calibrate/sighting.h"

#include <KxInspect/Calibration.h>
#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

/// A warning about y; empty without one.
QString warningAboutY(const CalibrationResult& result, const CalibrationTerms& terms) {
    constexpr double kMaxDifference = 1.0; // mm
    const double foundY = result.average.foundY;
    const QString byObject =
        QStringLiteral("%1 +- %2 mm").arg(foundY, 0, 'f', 2).arg(result.average.uncertainty.y, 0, 'f', 2);
    if (!result.hasY()) {
        return QStringLiteral("position %1 does not find y; tell it with %2 (by the object it is %3)")
            .arg(QString::number(result.task.placement), detail::toQt(terms.sensorY), byObject);
    }
    const bool isGiven = !placementOf(result.task.placement).findsY;
    if (isGiven && std::abs(static_cast<double>(*result.task.sensorY) - foundY) > kMaxDifference) {
        return QStringLiteral("%1 and %2 do not fit together: by the object y is %3")
            .arg(detail::toQt(terms.sensorY), detail::toQt(terms.crestY), byObject);
    }
    return {};
}

/// Finds the other pose, where nothing but the placement excludes it, and warns of it.
void addOtherPose(const detail::Axes& axes, const CalibrationTerms& terms, CalibrationResult& result) {
    if (result.task.obliqueCrest || axes.byMoves[2] != 0) {
        return;
    }
    const auto first = std::find_if(result.profiles.begin(), result.profiles.end(),
                                    [](const ProfilePose& profile) { return profile.hasPose(); });
    const SensorPose other = detail::upsideDown(result.average.pose, first->moved[2]);
    const bool isMirrored = placementOf(result.task.placement).isMirrored;
    const auto text = [](double value) { return QString::number(value, 'f', 1); };
    result.warnings.push_back(
        QStringLiteral(
            "only %1 %2 says that the oblique crest is %3 the straight ones; if it is %4, the sensor is upside "
            "down, at z = %5 mm with alpha %6 and gamma %7 degrees: say where the crest is with %8, or move the "
            "object along z (%9)")
            .arg(detail::toQt(terms.placement), QString::number(result.task.placement),
                 detail::placeName(isMirrored ? ObliqueCrest::Below : ObliqueCrest::Above),
                 detail::placeName(isMirrored ? ObliqueCrest::Above : ObliqueCrest::Below), text(other.z),
                 text(other.alpha), text(other.gamma), detail::toQt(terms.obliqueCrest), detail::toQt(terms.moved))
            .toStdString());
    result.otherPose = other;
}

/// Profiles that have no pose for the same reason.
struct Fault {
    std::string reason;
    std::string first; ///< name of the first of them
    int count = 0;
};

/// The faults, those of the most profiles first.
std::vector<Fault> faultsOf(const std::vector<ProfilePose>& profiles) {
    std::vector<Fault> faults;
    for (const ProfilePose& profile : profiles) {
        if (profile.hasPose()) {
            continue;
        }
        auto fault = std::find_if(faults.begin(), faults.end(),
                                  [&](const Fault& known) { return known.reason == profile.fault; });
        if (fault == faults.end()) {
            fault = faults.insert(fault, {profile.fault, profile.name});
        }
        ++fault->count;
    }
    std::stable_sort(faults.begin(), faults.end(), [](const Fault& a, const Fault& b) { return a.count > b.count; });
    return faults;
}

std::vector<std::string> warningsAboutFaults(const std::vector<ProfilePose>& profiles) {
    constexpr std::size_t kMost = 3;
    std::vector<std::string> warnings;
    int others = 0;
    for (const Fault& fault : faultsOf(profiles)) {
        if (warnings.size() == kMost) {
            others += fault.count;
            continue;
        }
        const std::string more = ", and so do " + std::to_string(fault.count - 1) + " more of " +
                                 std::to_string(profiles.size()) + " profiles";
        warnings.push_back("'" + fault.first + "' " + fault.reason + (fault.count > 1 ? more : ""));
    }
    if (others > 0) {
        warnings.push_back("other reasons leave " + std::to_string(others) + " of " + std::to_string(profiles.size()) +
                           " profiles without a pose");
    }
    return warnings;
}

} // namespace

std::string reasonWithoutPose(const CalibrationResult& result) {
    if (result.hasPose()) {
        return {};
    }
    if (!result.average.fault.empty()) {
        return result.average.fault;
    }
    if (result.profiles.empty()) {
        return "there is no profile";
    }
    if (result.profiles.size() == 1) {
        return "'" + result.profiles.front().name + "' " + result.profiles.front().fault;
    }
    return "none of " + std::to_string(result.profiles.size()) + " profiles has a pose";
}

CalibrationResult measurePoses(const std::vector<NamedProfile>& profiles, const CalibrationTask& task,
                               const Progress& progress, const CalibrationTerms& terms) {
    std::vector<std::array<double, 3>> moves;
    moves.reserve(profiles.size());
    for (const NamedProfile& profile : profiles) {
        moves.push_back(profile.moved);
    }
    checkCalibrationTask(task, moves, terms);
    CalibrationResult result;
    result.version = KxMath_GetVersionString();
    result.task = task;
    std::vector<detail::Sighting> sightings;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        if (progress) {
            progress("calibrating", static_cast<double>(i) / static_cast<double>(profiles.size()));
        }
        sightings.push_back(detail::sight(profiles[i], task));
    }
    const detail::Axes axes = detail::axesOf(sightings, task, terms);
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        result.profiles.push_back(detail::poseOf(profiles[i], sightings[i], axes, task, terms));
    }
    if (profiles.size() > 1) {
        result.warnings = warningsAboutFaults(result.profiles);
    }
    result.average = detail::averagePoses(result.profiles, placementOf(task.placement).findsY);
    result.flanks = detail::pooled(result.profiles);
    if (result.hasPose()) {
        result.side = axes.signs[1] > 0 ? SensorSide::SmallerY : SensorSide::LargerY;
        if (const QString warning = warningAboutY(result, terms); !warning.isEmpty()) {
            result.warnings.push_back(warning.toStdString());
        }
        addOtherPose(axes, terms, result);
    }
    return result;
}

} // namespace KxInspect
