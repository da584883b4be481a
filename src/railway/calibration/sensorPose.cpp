// The pose of a sensor from the ridges of the calibration object.
#include "railway/calibration/sensorPose.h"

#include "railway/sensorRotation.h"
#include "rounding/angles.h"

#include <algorithm>

namespace KxMath::detail {

namespace {

using Ridges = Vector<kRidgeValueCount>;

constexpr double kMaxAngleError = 0.1 * kPi / 180.0;
constexpr double kMaxPointError = 0.2; // mm, which leaves a third of 0.3 mm to the noise of the point itself
constexpr double kDeviations = 4.0; // an error is taken to be at most this many standard deviations

/// A point in the track frame.
struct TrackPoint {
    double x;
    double y;
    double z;
};

TrackPoint toTrack(const SensorPose& pose, const SensorRotation& r, double px, double py) {
    return {r.uX * px + r.vX * py + pose.x, r.uY * px + r.vY * py + pose.y, r.uZ * px + r.vZ * py + pose.z};
}

SensorRotation rotationOf(const SensorPose& pose) {
    return SensorRotation(pose.alpha, pose.beta, pose.gamma);
}

/// The angles from the span and the depth of the ridges.
struct Angles {
    double alpha;
    double gamma;
    double beta; ///< by the depth
    double betaBySpan; ///< the same angle, from the span having no component along Y
    double depth; ///< what p2 would be if betaBySpan were true
};

Angles solveAngles(const Ridges& r, const CalibrationObject& object) {
    const double spanX = r[kSpanX];
    const double spanY = r[kSpanY];
    const double depthX = r[kDepthX];
    const double depthY = r[kDepthY];
    Angles angles;
    // Along Z the span has the length p1 and the depth the length 0.
    const double sinA = -object.twoPitches * depthX / (spanY * depthX - spanX * depthY);
    angles.alpha = std::asin(sinA);
    const double cosA = std::cos(angles.alpha);
    const double cosC = (object.twoPitches + sinA * spanY) / (cosA * spanX);
    angles.gamma = std::acos(cosC);
    // Along Y the depth has the length p2.
    const double length = cosA * std::abs(depthY - spanY / spanX * depthX);
    const double ratio = object.depth / length;
    angles.beta = std::asin(ratio > 1.0 ? 1.0 : ratio);
    const double along = cosA * spanY + sinA * cosC * spanX;
    angles.betaBySpan = std::atan2(std::sin(angles.gamma) * spanX, along);
    angles.depth = length * std::sin(angles.betaBySpan);
    if (along < 0.0) {
        angles.beta = -angles.beta;
        angles.betaBySpan -= kPi;
    }
    return angles;
}

/// The pose from which the ridges are seen like this; a value is NaN when there is none.
SensorPose solvePose(const Angles& angles, double beta, const Ridges& r, const CalibrationObject& object,
                     const KxPlacement& placement) {
    SensorPose pose{angles.alpha, placement.isTurned ? beta + kPi : beta, angles.gamma, 0.0, 0.0, 0.0};
    const SensorRotation rotation = rotationOf(pose);
    const TrackPoint middle = toTrack(pose, rotation, r[kMiddleX], r[kMiddleY]);
    const TrackPoint oblique = toTrack(pose, rotation, r[kObliqueX], r[kObliqueY]);
    pose.z = -middle.z;
    pose.y = object.crestY - middle.y;
    pose.x = (pose.z + oblique.z - object.obliqueCrestZ()) / object.obliqueness - oblique.x;
    return pose;
}

/// What the ridges determine twice: the depth p2, and the plane of the crests, in which the oblique one lies, too. Both
/// in mm, 0 where the profile is that of the object.
enum Contradiction { kDepthContradiction, kObliqueContradiction, kContradictionCount };

Vector<kContradictionCount> contradictionsOf(const Ridges& r, const CalibrationObject& object) {
    const double behindCrests = r[kObliqueY] - r[kMiddleY] - r[kSpanY] / r[kSpanX] * (r[kObliqueX] - r[kMiddleX]);
    return {solveAngles(r, object).depth - object.depth, behindCrests};
}

/// Makes the ridges agree with the object exactly, provided that they do so within their noise.
/// @return false when they do not
bool reconcile(Uncertain<kRidgeValueCount>& ridges, const CalibrationObject& object) {
    constexpr double kMaxContradiction[] = {0.03, 0.1}; // mm, the tolerance of a real object
    constexpr int kRounds = 2; // the second one corrects for the curvature of the quantities
    const auto all =
        propagate<kContradictionCount>(ridges, [&](const Ridges& r) { return contradictionsOf(r, object); });
    for (std::size_t i = 0; i < kContradictionCount; ++i) {
        if (!(std::abs(all.value[i]) <= std::max(kMaxContradiction[i], kDeviations * all.deviation(i)))) {
            return false; // NaN too
        }
    }
    const auto covariance = ridges.covariance;
    for (int round = 0; round < kRounds; ++round) {
        ridges.covariance = covariance;
        for (std::size_t i = 0; i < kContradictionCount; ++i) {
            constrain(ridges, [&](const Ridges& r) { return contradictionsOf(r, object)[i]; });
        }
    }
    return true;
}

/// The values that decide by their standard deviation whether a pose is good.
enum JudgedValue {
    kAlpha,
    kBeta,
    kGamma,
    kEndPoints, ///< x, y and z of the two ends of the profile in the track frame
    kJudgedValueCount = kEndPoints + 6
};

/// Ridges that agree with the object have one beta; the one by the span has no bound at 90 degrees.
Vector<kJudgedValueCount> judgedValues(const Ridges& ridges, const CalibrationObject& object,
                                       const KxPlacement& placement, const ProfilePoint (&ends)[2]) {
    const Angles angles = solveAngles(ridges, object);
    const SensorPose pose = solvePose(angles, angles.betaBySpan, ridges, object, placement);
    const SensorRotation rotation = rotationOf(pose);
    Vector<kJudgedValueCount> values{pose.alpha, pose.beta, pose.gamma};
    std::size_t at = kEndPoints;
    for (const ProfilePoint& end : ends) {
        const TrackPoint p = toTrack(pose, rotation, end.x, end.y);
        values[at++] = p.x;
        values[at++] = placement.findsY ? p.y : p.y - pose.y; // otherwise y is given, and has no error
        values[at++] = p.z;
    }
    return values;
}

/// True when the noise leaves the pose good enough. NaN: false.
bool isPrecise(const Uncertain<kJudgedValueCount>& values) {
    for (std::size_t i = 0; i < kJudgedValueCount; ++i) {
        if (!(kDeviations * values.deviation(i) <= (i < kEndPoints ? kMaxAngleError : kMaxPointError))) {
            return false;
        }
    }
    return true;
}

/// True when gamma and beta are certainly inside the quadrants in which the ridges determine their signs. At 0 and 90
/// degrees the noise, or without any the rounding, would decide. NaN: false.
bool hasClearSigns(const Uncertain<kJudgedValueCount>& values, const KxPlacement& placement) {
    constexpr double kMinDistance = 0.02 * kPi / 180.0;
    const auto isClear = [&](double distance, std::size_t i) {
        return distance > std::max(kMinDistance, kDeviations * values.deviation(i));
    };
    const double gamma = values.value[kGamma];
    const double beta = std::abs(placement.isTurned ? values.value[kBeta] - kPi : values.value[kBeta]);
    return isClear(gamma, kGamma) && isClear(kPi - gamma, kGamma) && isClear(beta, kBeta) &&
           isClear(kPi / 2.0 - beta, kBeta);
}

/// The sum of the squared distances of the points of a flank from the object, along Y.
double squaredResiduals(const Flank& flank, const SensorPose& pose, const SensorRotation& rotation,
                        const CalibrationObject& object) {
    const double facing = rotation.vY < 0.0 ? -1.0 : 1.0;
    double squares = 0.0;
    for (const ProfilePoint& point : flank.points) {
        const TrackPoint p = toTrack(pose, rotation, point.x, point.y);
        const double residual = facing * (p.y - object.crestY) - object.depthAt(flank.ridge, flank.isBehind, p.x, p.z);
        squares += residual * residual;
    }
    return squares;
}

struct Residuals {
    bool areSmall; ///< on every flank
    double all; ///< root mean square over all flanks
};

Residuals residualsOf(const RidgeFit& fit, const SensorPose& pose, const CalibrationObject& object) {
    constexpr double kMaxDeviation = 0.1; // mm, of the object
    constexpr double kMaxNoise = 0.1; // mm; larger values mean that a flank is not a straight line
    const double limit = kMaxDeviation + 2.0 * std::min(fit.noise, kMaxNoise);
    const SensorRotation rotation = rotationOf(pose);
    bool areSmall = true;
    double squares = 0.0;
    qsizetype count = 0;
    for (const Flank& flank : fit.flanks) {
        const double flankSquares = squaredResiduals(flank, pose, rotation, object);
        if (!(std::sqrt(flankSquares / static_cast<double>(flank.points.size())) <= limit)) { // NaN: true
            areSmall = false;
        }
        squares += flankSquares;
        count += flank.points.size();
    }
    return {areSmall, std::sqrt(squares / static_cast<double>(count))};
}

/// The residuals for the better of two ways to make the oblique ridge: with the slope of the others along Z, or across
/// the ridge.
Residuals smallerResiduals(const RidgeFit& fit, const SensorPose& pose, const CalibrationObject& object) {
    CalibrationObject across = object;
    across.obliqueSlopeFactor = std::sqrt(1.0 + object.obliqueness * object.obliqueness);
    const Residuals first = residualsOf(fit, pose, object);
    const Residuals second = residualsOf(fit, pose, across);
    return second.all < first.all ? second : first;
}

} // namespace

PoseFit fitPose(const RidgeFit& fit, const CalibrationObject& object, const KxPlacement& placement) {
    Uncertain<kRidgeValueCount> ridges = fit.ridges;
    const bool isConsistent = reconcile(ridges, object);
    const Angles angles = solveAngles(ridges.value, object);
    const SensorPose pose = solvePose(angles, angles.beta, ridges.value, object, placement);
    const ProfilePoint ends[2] = {fit.flanks.first().points.first(), fit.flanks.last().points.last()};
    const auto judged =
        propagate<kJudgedValueCount>(ridges, [&](const Ridges& r) { return judgedValues(r, object, placement, ends); });
    const Residuals residuals = smallerResiduals(fit, pose, object);
    return {pose, isConsistent && isPrecise(judged) && hasClearSigns(judged, placement) && residuals.areSmall,
            residuals.all, std::max({judged.deviation(kAlpha), judged.deviation(kBeta), judged.deviation(kGamma)})};
}

} // namespace KxMath::detail
