// Simulated profiles of the calibration object and their true points.
#pragma once

#include "simulator/calibrationProfile.h"
#include "trials/poseTrial.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/KxMathTypes.h>

#include <gtest/gtest.h>

namespace calibration_test {

using namespace KxInspect;

/// A profile of an object whose measures all differ, from a pose that is turned and moved in every way.
struct Shot {
    CalibrationTask task;
    kxsim::Pose pose;
    Profile profile;
    std::vector<kxsim::Vec3> truth; ///< where the points are, without noise
    bool isInView;

    explicit Shot(int placement, double noise = 0.02, std::uint64_t seed = 5) {
        task.placement = placement;
        task.object = {22.0, 1.1, calibrationObjectFor(placement).obliqueness * 1.2, 120.0};
        pose = kxsim::offsetPose(kxsim::nominalCalibrationPose(placement, task.object), placement, 4.0, -3.0, 2.0,
                                 {5, -10, 8});
        task.side = kxsim::sideOf(pose, task.object);
        kxsim::CalibrationSensor sensor;
        sensor.noise = noise;
        kxsim::Random random({seed, static_cast<std::uint64_t>(placement)});
        KxMath::KxProfile points;
        isInView = takeCalibrationProfile(task.object, placement, pose, sensor, random, points, &truth);
        profile = fromKxProfile(points);
    }

    float trueY() const { return static_cast<float>(pose.origin.y); }
};

/// The largest distance of the points, transformed by a pose, from their true positions.
inline double pointError(const Shot& shot, const SensorPose& pose) {
    const std::vector<Point3> found = toTrack(shot.profile, pose);
    EXPECT_EQ(found.size(), shot.truth.size());
    double largest = 0.0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const kxsim::Vec3 p{static_cast<double>(found[i].x), static_cast<double>(found[i].y),
                            static_cast<double>(found[i].z)};
        const kxsim::Vec3 error = p - shot.truth[i];
        largest = std::max(largest, std::sqrt(dot(error, error)));
    }
    return largest;
}

} // namespace calibration_test
