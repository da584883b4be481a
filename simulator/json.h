// Parts of the simulator as JSON.
#pragma once

#include "simulator/calibrationObject.h"

#include <QtCore/QJsonObject>

namespace kxsim {

QJsonObject toJson(const Pose& pose);
QJsonObject toJson(const CalibrationObject& object);

} // namespace kxsim
