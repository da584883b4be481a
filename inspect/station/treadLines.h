// The lines between which treads are judged.
#pragma once

#include "inspect/station/stationSide.h"

namespace KxInspect::detail {

/// Finds where treads begin and end behind the back faces, and sets the lines for their judgement.
/// @param side with its lines and wheels
/// @return why that is not possible; empty when it is
QString findTreadLines(const StationSide& side, FittedSensor& sensor);

} // namespace KxInspect::detail
