// The measures of the wheels of a pass as JSON.
#pragma once

#include "inspect/results/json.h"

#include <KxInspect/PassWheels.h>

#include <QtCore/QJsonArray>

#include <vector>

namespace KxInspect::detail {

/// The section of each wheel is among the pictures.
QJsonArray wheelMeasuresList(const std::vector<PassWheelMeasures>& wheels, Pictures pictures);

/// Reads what wheelMeasuresList() wrote. Throws an Error for anything else.
std::vector<PassWheelMeasures> readWheelMeasures(const JsonValue& list, std::size_t pairs);

} // namespace KxInspect::detail
