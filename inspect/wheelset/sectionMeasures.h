// The measures of a wheel from what its sensors see.
#pragma once

#include "inspect/wheelset/turnedWheel.h"

#include <KxInspect/PassWheels.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// The profiles of a wheel from one sensor.
struct SensorView {
    SensorProfiles profiles; ///< without them the sensor has not seen the wheel
    int sensor = 0; ///< its number in the settings
    bool isOnFieldSide = false;
    int wheel = 0; ///< its number in the recording, 0 where that does not show it
    std::string missing; ///< why there are no profiles, a clause
};

/// Measures a wheel. `pair` and `side` are left to the caller.
/// @param views of the sensors of one side
/// @param expectedFace across: where the back of a wheel is expected, mm
/// @param warnings receives what makes measures doubtful, predicates of sentences about the wheel
PassWheelMeasures measureWheelOf(const std::vector<SensorView>& views, double expectedFace,
                                 std::vector<std::string>& warnings);

} // namespace KxInspect::detail
