// Parts of the simulator as JSON.
#pragma once

#include "simulator/pose.h"

#include <KxInspect/CalibrationObject.h>

#include <QtCore/QJsonObject>

namespace kxsim {

QJsonObject toJson(const Pose& pose);
QJsonObject toJson(const KxInspect::CalibrationObject& object);

} // namespace kxsim
