// Parts of the simulator as JSON.
#include "simulator/json.h"

#include <KxInspect/Calibration.h>

namespace kxsim {

QJsonObject toJson(const Pose& pose) {
    const Vec3& at = pose.origin;
    const KxInspect::SensorPose values{at.x, at.y, at.z, pose.alpha, pose.beta, pose.gamma};
    QJsonObject json;
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        json[QLatin1String(field.name)] = values.*field.value;
    }
    return json;
}

QJsonObject toJson(const KxInspect::CalibrationObject& object) {
    QJsonObject json;
    for (const KxInspect::CalibrationObjectField& field : KxInspect::kCalibrationObjectFields) {
        json[QLatin1String(field.name)] = object.*field.value;
    }
    return json;
}

} // namespace kxsim
