// From the pose in the frame of the calibration object to that in the track.
#include "inspect/calibrate/trackPose.h"

#include "inspect/base/paths.h"
#include "inspect/calibrate/poseAverage.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace KxInspect::detail {

namespace {

constexpr double kDegrees = 180.0 / std::numbers::pi;

int signOf(double value) {
    return value < 0.0 ? -1 : 1;
}

Vec3 turned(const Vec3& v, const AxisSigns& signs, double factor = 1.0) {
    return {factor * signs[0] * v[0], factor * signs[1] * v[1], factor * signs[2] * v[2]};
}

/// How much the places of a sensor along an axis contradict each other when that axis runs along `sign`: their chi
/// squared about the mean.
double contradiction(const std::vector<Sighting>& sightings, std::size_t axis, int sign) {
    constexpr double kLeastDeviation = 1e-3; // mm
    double weights = 0.0;
    double sum = 0.0;
    double squares = 0.0;
    for (const Sighting& s : sightings) {
        if (!s.fit) {
            continue;
        }
        const std::size_t value = ObjectPose::kX + axis;
        const double weight = 1.0 / (s.fit->covariance[value][value] + kLeastDeviation * kLeastDeviation);
        const double place = sign * s.fit->pose.values[value] + s.moved[axis];
        weights += weight;
        sum += weight * place;
        squares += weight * place * place;
    }
    return weights > 0.0 ? squares - sum * sum / weights : 0.0;
}

/// The placement code with these properties.
int codeOf(bool isMirrored, bool isTurned) {
    return isMirrored ? (isTurned ? 4 : 3) : (isTurned ? 2 : 1);
}

QString sideName(int sign) {
    return sign > 0 ? QStringLiteral("at smaller y than the crests") : QStringLiteral("at larger y than the crests");
}

/// True when the object was moved along an axis between the profiles that show it, or between all of them.
bool wasMoved(const std::vector<Sighting>& sightings, std::size_t axis, bool isFitNeeded) {
    const Sighting* first = nullptr;
    for (const Sighting& s : sightings) {
        if (isFitNeeded && !s.fit) {
            continue;
        }
        if (first != nullptr && first->moved[axis] != s.moved[axis]) {
            return true;
        }
        first = first != nullptr ? first : &s;
    }
    return false;
}

AxisSigns signsByTask(const CalibrationTask& task) {
    const auto side = task.givenSide();
    return {signOf(task.object.obliqueness), side ? (*side == SensorSide::SmallerY ? 1 : -1) : 0,
            placementOf(task.placement).isMirrored ? -1 : 1};
}

/// The sine of gamma of the sensor, not yet folded by the placement.
bool isGammaPositive(const SensorPose& pose, bool isMirrored) {
    return (std::sin(pose.gamma / kDegrees) > 0.0) != isMirrored;
}

} // namespace

double halfWidthOf(const ObjectFit& fit, std::size_t value) {
    const double unit = value < ObjectPose::kX ? kDegrees : 1.0;
    return kNormal95 * std::sqrt(fit.covariance[value][value]) * unit;
}

namespace {

/// A pose of a statistic of each value, by its place in ObjectPose.
template <typename Of>
SensorPose eachValue(Of of) {
    return {of(ObjectPose::kX),     of(ObjectPose::kY),    of(ObjectPose::kZ),
            of(ObjectPose::kAlpha), of(ObjectPose::kBeta), of(ObjectPose::kGamma)};
}

double unitOf(std::size_t value) {
    return value < ObjectPose::kX ? kDegrees : 1.0;
}

} // namespace

SensorPose uncertaintyByObject(const ObjectFit& fit) {
    return eachValue([&](std::size_t value) { return kNormal95 * fit.objectDeviations[value] * unitOf(value); });
}

SensorPose uncertaintyOf(const ObjectFit& fit) {
    const SensorPose byObject = uncertaintyByObject(fit);
    SensorPose all = eachValue([&](std::size_t value) { return halfWidthOf(fit, value); });
    for (const PoseField& field : kPoseFields) {
        // Flanks deviate because the object does: its told error and their deviation count once.
        const double noise = all.*field.value / std::sqrt(fit.inflation);
        all.*field.value = std::max(all.*field.value, std::hypot(noise, byObject.*field.value));
    }
    return all;
}

AxisSigns signsByMoves(const std::vector<Sighting>& sightings) {
    // Places that noise scatters by so much, in chi squared, do not happen; and the right sign leaves much less.
    constexpr double kCertain = 50.0;
    constexpr double kPart = 0.25;
    AxisSigns signs{};
    for (std::size_t axis = 0; axis < signs.size(); ++axis) {
        const double along = contradiction(sightings, axis, 1);
        const double against = contradiction(sightings, axis, -1);
        if (std::max(along, against) > kCertain && std::min(along, against) < kPart * std::max(along, against)) {
            signs[axis] = along < against ? 1 : -1;
        }
    }
    return signs;
}

Axes axesOf(const std::vector<Sighting>& sightings, const CalibrationTask& task, const CalibrationTerms& terms) {
    Axes axes;
    axes.byMoves = signsByMoves(sightings);
    const AxisSigns given = signsByTask(task);
    axes.signs = given;
    for (std::size_t axis = 0; axis < given.size(); ++axis) {
        axes.signs[axis] = axes.byMoves[axis] != 0 ? axes.byMoves[axis] : given[axis];
    }
    const auto contradicts = [&](std::size_t axis) { return given[axis] != 0 && axes.signs[axis] != given[axis]; };
    for (std::size_t axis = 0; axis < given.size(); ++axis) {
        if (wasMoved(sightings, axis, false) && !wasMoved(sightings, axis, true)) {
            axes.fault = QStringLiteral("shows the object, but no other profile shows it at another place along %1")
                             .arg(QLatin1Char("xyz"[axis]));
            return axes;
        }
    }
    if (axes.signs[1] == 0) {
        axes.fault = QStringLiteral("fits a sensor on either side of the crests: the object was not moved far enough "
                                    "along y; give %1 or %2")
                         .arg(toQt(terms.side), toQt(terms.sensorY));
    } else if (contradicts(1)) {
        axes.fault = QStringLiteral("contradicts %1: the moves of the object show that the sensor stands %2")
                         .arg(toQt(task.side ? terms.side : terms.sensorY), sideName(axes.signs[1]));
    } else if (contradicts(2)) {
        axes.fault = QStringLiteral("contradicts %1 %2: the moves of the object show its oblique crest %3 the others")
                         .arg(toQt(terms.placement), QString::number(task.placement),
                              axes.signs[2] > 0 ? QStringLiteral("above") : QStringLiteral("below"));
    } else if (contradicts(0)) {
        axes.fault = QStringLiteral("contradicts %1 %2: by the moves of the object it is %3")
                         .arg(toQt(terms.obliqueness), QString::number(task.object.obliqueness),
                              QString::number(-task.object.obliqueness));
    }
    return axes;
}

SensorPose trackPose(const Sighting& sighting, const AxisSigns& signs, const CalibrationTask& task) {
    const ObjectPose& pose = sighting.fit->pose;
    const Vec3 u = turned(pose.alongX(), signs, sighting.isReversed ? -1.0 : 1.0);
    const Vec3 v = turned(pose.alongY(), signs);
    const Vec3 origin = turned(pose.origin(), signs);
    const Placement placement = placementOf(task.placement);
    const double alpha = -std::asin(std::clamp(v[2], -1.0, 1.0));
    const double beta = std::atan2(v[1], v[0]);
    const double gamma = std::atan2(std::sin(beta) * u[0] - std::cos(beta) * u[1], u[2] / std::cos(alpha));
    SensorPose result;
    result.x = origin[0] + sighting.moved[0];
    result.y = origin[1] + sighting.moved[1] + task.object.crestY;
    result.z = origin[2] + sighting.moved[2];
    result.alpha = alpha * kDegrees + (placement.isMirrored ? 360.0 : 0.0);
    result.beta = std::remainder(beta * kDegrees - (placement.isTurned ? 180.0 : 0.0), 360.0) +
                  (placement.isTurned ? 180.0 : 0.0);
    result.gamma = gamma * kDegrees + (gamma < 0.0 ? 360.0 : 0.0);
    return result;
}

QString placeName(ObliqueCrest place) {
    return place == ObliqueCrest::Above ? QStringLiteral("above") : QStringLiteral("below");
}

SensorPose upsideDown(const SensorPose& pose, double crestZ) {
    // The directions of x and y of the profile keep their parts along X and Y.
    const double gamma = std::remainder(180.0 - pose.gamma, 360.0);
    return {pose.x,
            pose.y,
            2.0 * crestZ - pose.z,
            std::remainder(-pose.alpha, 360.0),
            pose.beta,
            gamma + (gamma < 0.0 ? 360.0 : 0.0)};
}

QString placementFault(const Sighting& sighting, const Axes& axes, const CalibrationTask& task,
                       const CalibrationTerms& terms) {
    const Placement placement = placementOf(task.placement);
    const bool isMirrored = axes.byMoves[2] != 0 ? axes.signs[2] < 0 : sighting.isReversed;
    const double awayX = axes.signs[0] * sighting.fit->pose.alongY()[0];
    const bool isTurned = awayX < 0.0;
    if (isMirrored != placement.isMirrored || isTurned != placement.isTurned) {
        const QString upsideDown =
            isMirrored == placement.isMirrored ? QString() : QStringLiteral(", or is the sensor upside down?");
        return QStringLiteral("fits no pose of the object; it would with %1 %2 %3 %4%5")
            .arg(toQt(terms.placement), QString::number(codeOf(isMirrored, isTurned)), toQt(terms.obliqueness),
                 QString::number(task.object.obliqueness), upsideDown);
    }
    // An object that is not the one drawn shows its handedness by the sign of the obliqueness alone. Then gamma must be
    // in the half where every placement has it, so that one wrong statement about side or obliqueness is noticed.
    const bool isUsual = axes.signs[0] == axes.signs[1];
    const SensorPose pose = trackPose(sighting, axes.signs, task);
    if (axes.byMoves[1] == 0 && !isUsual && !isGammaPositive(pose, placement.isMirrored)) {
        return QStringLiteral(
                   "fits only a sensor on the other side of the crests than %1 tells, or an object with %2 %3")
            .arg(toQt(task.side ? terms.side : terms.sensorY), toQt(terms.obliqueness),
                 QString::number(-task.object.obliqueness));
    }
    return {};
}

} // namespace KxInspect::detail
