// What the settings say of the sensor of a recording.
#pragma once

#include "inspect/train/passInputs.h"

namespace KxInspect::detail {

/// What a recording is used for.
enum class SensorRole {
    Facing, ///< one of two that face each other, SENSOR1 or SENSOR2
    Paired, ///< one of two that face each other, of several sensors
    Further ///< measures of wheels only
};

/// @{ These throw an Error for keys that are missing, wrong or out of range, and for a sensor that the settings do not name.
const SensorSettings& sensorOf(const StationSettings& settings, const SideInput& side);
void lookUpSensor(const StationSettings& settings, int mode, SensorRole role, SideInput& side);
TreadLines lookUpTread(const DefectSettings& settings, const SideInput& side);
void requireGoodDefects(const DefectSettings& settings);
void requireOwnSerials(const StationSettings& settings); ///< each sensor its own
float requireBaseDistance(const StationSettings& settings);
/// @}

} // namespace KxInspect::detail
