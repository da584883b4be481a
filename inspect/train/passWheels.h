// The measures of the wheels of a pass from all sensors of their sides.
#pragma once

#include "inspect/train/wheelCollector.h"

#include <KxInspect/PassResult.h>
#include <KxInspect/Progress.h>
#include <KxInspect/Settings.h>
#include <KxInspect/TaskRunner.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// What the recording of a sensor holds.
struct SensorWheels {
    const SensorSettings* sensor = nullptr; ///< with its side
    const WheelCollector* found = nullptr; ///< null without a recording
    std::string missing; ///< why there is no recording, a clause
};

/// SensorWheels::missing of a sensor whose recording was not given.
inline constexpr const char* kNotGiven = "no recording of this sensor was given";

/// Measures both wheels of each pair; nothing when no sensor with a recording has a side.
/// @param sensors all of the station that have a side
/// @param sides of the recordings that were paired, in the order of WheelPair::wheels
void measureWheels(const std::vector<SensorWheels>& sensors, const std::array<const WheelCollector*, 2>& sides,
                   const StationSettings& settings, const TaskRunner& runner, const Progress& progress,
                   PassResult& result);

} // namespace KxInspect::detail
