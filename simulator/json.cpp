// Parts of the simulator as JSON.
#include "simulator/json.h"

namespace kxsim {

QJsonObject toJson(const Pose& pose) {
    return {{"x", pose.origin.x},  {"y", pose.origin.y}, {"z", pose.origin.z},
            {"alpha", pose.alpha}, {"beta", pose.beta},  {"gamma", pose.gamma}};
}

QJsonObject toJson(const CalibrationObject& object) {
    return {
        {"pitch", object.pitch}, {"slope", object.slope}, {"oblique", object.obliqueness}, {"planeY", object.crestY}};
}

} // namespace kxsim
