// The recordings of a pass from several sensors, of which some may fail.
#pragma once

#include "inspect/train/passInputs.h"

namespace KxInspect::detail {

/// Whether recordings are more than those of two sensors that face each other: there are more than two, or the settings
/// give the sides of both and they do not face each other.
bool isOfSeveralSensors(const std::vector<std::string>& recordings, const StationSettings& settings);

/// Opens them. The first sensor between the rails on either side gives the distances. A recording that is missing or cannot be
/// opened stays without a stream, and so does that of a side for which no recording of such a sensor was given.
/// Throws an Error for settings that do not give a side for each sensor, and when neither side has a recording for distances.
PassInputs openSeveral(const std::vector<std::string>& recordings, const StationSettings& settings, int mode);

/// "recording 'NAME' REASON", for one that failed.
std::string failureOf(const SideInput& side, const std::string& reason);

} // namespace KxInspect::detail
