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
constexpr double kDeviations = 4.0; // that an error may be large

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
    double betaBySpan; ///< the same angle by what the span measures along Y, which is nothing
    double depth; ///< what p2 would be if betaBySpan were true
};

Angles solveAngles(const Ridges& r, const CalibrationObject& object) {
    const double spanX = r[kSpanX];
    const double spanY = r[kSpanY];
    const double depthX = r[kDepthX];
    const double depthY = r[kDepthY];
    Angles angles;
    // Along Z the span measures p1 and the depth nothing.
    const double sinA = -object.twoPitches * depthX / (spanY * depthX - spanX * depthY);
    angles.alpha = std::asin(sinA);
    const double cosA = std::cos(angles.alpha);
    const double cosC = (object.twoPitches + sinA * spanY) / (cosA * spanX);
    angles.gamma = std::acos(cosC);
    // Along Y the depth measures p2.
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

/// The pose from which the ridges look so; NaN in some value when there is none.
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

/// What the ridges tell twice: the depth p2, and that the oblique crest lies in the plane of the others. Both in mm, 0
/// where the profile is that of the object.
enum Contradiction { kDepthContradiction, kObliqueContradiction, kContradictionCount };

Vector<kContradictionCount> contradictionsOf(const Ridges& r, const CalibrationObject& object) {
    const double behindCrests = r[kObliqueY] - r[kMiddleY] - r[kSpanY] / r[kSpanX] * (r[kObliqueX] - r[kMiddleX]);
    return {solveAngles(r, object).depth - object.depth, behindCrests};
}

/// Makes the ridges agree with the object where they do within their noise.
/// @return false when they do not
bool reconcile(Uncertain<kRidgeValueCount>& ridges, const CalibrationObject& object) {
    constexpr double kMaxContradiction[] = {0.03, 0.1}; // mm, that a real object may be off
    constexpr int kRounds = 2; // for what is not linear
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

/// What is judged by its standard deviation.
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
        values[at++] = placement.findsY ? p.y : p.y - pose.y; // else y is known without error
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

/// True when gamma and beta are surely within the quadrants in which the ridges tell their signs. At 0 and 90 degrees
/// the noise, or in its absence the rounding, would choose. NaN: false.
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
    constexpr double kMaxNoise = 0.1; // mm; what is more comes from lines that are none
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

/// The residuals for that way of cutting the oblique ridge which fits better: its slope along Z, or across the ridge.
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
