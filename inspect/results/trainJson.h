// The vehicles of a pass in its JSON form.
#pragma once

#include "inspect/results/json.h"

#include <KxInspect/PassResult.h>

namespace KxInspect::detail {

QJsonObject trainObject(const PassTrain& train);
PassTrain readTrain(const JsonValue& value);

/// Adds vehicle, bogie, axle and vehicleReason to the object of a pair.
void addAxleNumber(const AxleNumber& number, QJsonObject& pair);
AxleNumber readAxleNumber(const JsonValue& pair);

} // namespace KxInspect::detail
