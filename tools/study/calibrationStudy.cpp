// Sensors calibrated with three objects, which differ from their measures; one profile each time.
#include "tools/study/studies.h"

#include "simulator/calibrationProfile.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/KxMathTypes.h>

#include <cmath>
#include <string>

namespace kxstudy {

namespace {

constexpr int kPlacement = 2;
constexpr KxInspect::ObjectError kObjectError = {0.002, 1e-4, 5e-5};

/// An object as it was made.
KxInspect::CalibrationObject objectOf(int station) {
    kxsim::Random random({6000, static_cast<std::uint64_t>(station)});
    KxInspect::CalibrationObject object = KxInspect::calibrationObjectFor(kPlacement);
    object.pitch += kObjectError.pitch * random.normal();
    object.slope += kObjectError.slope * random.normal();
    object.obliqueness += kObjectError.obliqueness * random.normal();
    return object;
}

kxsim::Pose poseOf(int part) {
    kxsim::Random random({6001, static_cast<std::uint64_t>(part)});
    const auto angle = [&] { return random.uniform(-3.0, 3.0); };
    const auto place = [&] { return random.uniform(-20.0, 20.0); };
    const double alpha = angle();
    const double beta = angle();
    const double gamma = angle();
    const double x = place();
    const double y = place();
    const double z = place();
    const kxsim::Pose nominal = kxsim::nominalCalibrationPose(kPlacement, KxInspect::calibrationObjectFor(kPlacement));
    return kxsim::offsetPose(nominal, kPlacement, alpha, beta, gamma, {x, y, z});
}

double trueValue(const kxsim::Pose& pose, const KxInspect::PoseField& field) {
    KxInspect::SensorPose truth;
    truth.x = pose.origin.x;
    truth.y = pose.origin.y;
    truth.z = pose.origin.z;
    truth.alpha = pose.alpha;
    truth.beta = pose.beta;
    truth.gamma = pose.gamma;
    return truth.*field.value;
}

} // namespace

std::vector<StudiedValue> studyCalibrate(const Report& report) {
    std::vector<StudiedValue> values;
    values.reserve(KxInspect::kPoseFields.size());
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        values.push_back({"calibrate", field.name, field.isAngle ? "degrees" : "mm", field.isAngle ? 0.2 : 1.0, 4});
    }
    for (int part = 0; part < kParts; ++part) {
        report("calibrate: sensor " + std::to_string(part + 1));
        const kxsim::Pose pose = poseOf(part);
        for (int station = 0; station < kStations; ++station) {
            for (int pass = 0; pass < kPasses; ++pass) {
                kxsim::Random random({6002, static_cast<std::uint64_t>(part), static_cast<std::uint64_t>(station),
                                      static_cast<std::uint64_t>(pass)});
                KxMath::KxProfile profile;
                takeCalibrationProfile(objectOf(station), kPlacement, pose, {}, random, profile);
                KxInspect::CalibrationTask task;
                task.placement = kPlacement;
                task.object = KxInspect::calibrationObjectFor(kPlacement);
                task.objectError = kObjectError;
                task.sensorY = static_cast<float>(pose.origin.y); // its side is all that counts
                const KxInspect::CalibrationResult result =
                    measurePoses({{"profile", KxInspect::fromKxProfile(profile)}}, task);
                for (std::size_t i = 0; i < values.size(); ++i) {
                    const KxInspect::PoseField& field = KxInspect::kPoseFields[i];
                    const double truth = trueValue(pose, field);
                    double value = result.hasPose() ? result.average.pose.*field.value : std::nan("");
                    if (field.isAngle) {
                        value = truth + std::remainder(value - truth, 360.0);
                    }
                    values[i].readings.push_back(
                        {part, station, value, truth,
                         KxInspect::Interval::around(static_cast<float>(value),
                                                     static_cast<float>(result.average.uncertainty.*field.value))});
                }
            }
        }
    }
    return values;
}

} // namespace kxstudy
