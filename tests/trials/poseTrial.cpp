// The pose of a simulated sensor as the measuring finds it, beside the true one.
#include "trials/poseTrial.h"

#include <KxInspect/KxMathTypes.h>

#include <algorithm>
#include <cmath>

namespace kxsim {

KxInspect::SensorSide sideOf(const Pose& pose, const CalibrationObject& object) {
    return pose.origin.y < object.crestY ? KxInspect::SensorSide::SmallerY : KxInspect::SensorSide::LargerY;
}

PoseTrialSetup randomSetup(int placement, const CalibrationSensor& sensor, double offset, Random& random) {
    constexpr double kCrestY = 500.0;
    constexpr double kTurn = 10.0; // degrees
    PoseTrialSetup setup{placement, KxInspect::calibrationObjectFor(placement, kCrestY), {}, sensor, {}};
    const double alpha = random.uniform(-kTurn, kTurn);
    const double beta = random.uniform(-kTurn, kTurn);
    const double gamma = random.uniform(-kTurn, kTurn);
    const double x = random.uniform(-offset, offset);
    const double y = random.uniform(-offset, offset);
    const double z = random.uniform(-offset, offset);
    setup.pose = offsetPose(nominalCalibrationPose(placement, setup.object), placement, alpha, beta, gamma, {x, y, z});
    setup.task.placement = placement;
    setup.task.object = setup.object;
    setup.task.side = sideOf(setup.pose, setup.object);
    return setup;
}

double PoseTrial::error(const KxInspect::PoseField& field) const {
    const KxInspect::PoseAverage& found = result.average;
    const double value = KxInspect::withFoundY(found.pose, found.foundY).*field.value;
    return field.isAngle ? std::remainder(value - truth.*field.value, 360.0) : value - truth.*field.value;
}

double PoseTrial::angleError() const {
    double largest = 0.0;
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        largest = field.isAngle ? std::max(largest, std::abs(error(field))) : largest;
    }
    return largest;
}

double PoseTrial::placeError() const {
    double largest = 0.0;
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        largest = field.isAngle ? largest : std::max(largest, std::abs(error(field)));
    }
    return largest;
}

bool PoseTrial::holds(const KxInspect::PoseField& field) const {
    return std::abs(error(field)) <= result.average.uncertainty.*field.value; // NaN: false
}

PoseTrial tryPose(const PoseTrialSetup& setup, Random& random) {
    PoseTrial trial;
    std::vector<KxInspect::NamedProfile> profiles;
    for (const auto& moved : setup.moves) {
        Pose seenFrom = setup.pose;
        seenFrom.origin = seenFrom.origin - Vec3{moved[0], moved[1], moved[2]};
        KxMath::KxProfile profile;
        trial.isInView =
            takeCalibrationProfile(setup.object, setup.placement, seenFrom, setup.sensor, random, profile) &&
            trial.isInView;
        profiles.push_back({{}, KxInspect::fromKxProfile(profile), moved});
    }
    const Vec3& at = setup.pose.origin;
    trial.truth = {at.x, at.y, at.z, setup.pose.alpha, setup.pose.beta, setup.pose.gamma};
    trial.result = KxInspect::measurePoses(profiles, setup.task);
    return trial;
}

} // namespace kxsim
