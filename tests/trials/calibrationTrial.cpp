// A calibration of a simulated sensor and its errors.
#include "trials/calibrationTrial.h"

#include <KxMath/KxMetro.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kxsim {

namespace {

/// The difference of two angles in degrees, modulo 360.
double angleDifference(double a, double b) {
    return std::abs(std::remainder(a - b, 360.0));
}

double toDegrees(float radians) {
    return static_cast<double>(radians) * 180.0 / std::numbers::pi;
}

} // namespace

CalibrationTrial tryCalibration(const CalibrationObject& object, int placement, const Pose& pose,
                                const CalibrationSensor& sensor, Random& random) {
    CalibrationTrial trial{};
    std::vector<Vec3> truth;
    KxMath::KxProfile profile;
    trial.isInView = takeCalibrationProfile(object, placement, pose, sensor, random, profile, &truth);
    KxMath::_KxMETRO_SensorCoord_ coord{};
    coord.y = static_cast<float>(pose.origin.y);
    coord.position = placement;
    trial.isDone =
        METRO_calcAnglesCoord(profile, static_cast<float>(object.p1()), static_cast<float>(object.p2()),
                              static_cast<float>(object.p3()), static_cast<float>(object.p4()), coord, {}, nullptr);
    if (!trial.isDone) {
        return trial;
    }
    coord.alpha = static_cast<float>(toDegrees(coord.alpha));
    coord.beta = static_cast<float>(toDegrees(coord.beta));
    coord.gamma = static_cast<float>(toDegrees(coord.gamma));
    trial.angleError = std::max({angleDifference(static_cast<double>(coord.alpha), pose.alpha),
                                 angleDifference(static_cast<double>(coord.beta), pose.beta),
                                 angleDifference(static_cast<double>(coord.gamma), pose.gamma)});
    KxMath::KxPointCloud<KxMath::KxPointXYZ> cloud;
    KxMath::METRO_XYtoXYZ(profile, cloud, coord);
    for (int i = 0; i < cloud.size(); ++i) {
        const KxMath::KxPointXYZ& p = std::as_const(cloud.points)[i];
        const Vec3 error = Vec3{static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)} -
                           truth[static_cast<std::size_t>(i)];
        trial.pointError = std::max(trial.pointError, std::sqrt(dot(error, error)));
    }
    return trial;
}

} // namespace kxsim
