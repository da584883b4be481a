// Which sensors a simulated station has, where they stand, and what they see.
#pragma once

#include "simulator/pose.h"

#include <optional>
#include <string>
#include <vector>

namespace kxsim {

/// Where a sensor looks at the wheels from.
enum class SensorPlace {
    Inner, ///< between the rails
    Field ///< outside
};

/// A sensor of a layout.
struct LayoutSensor {
    int serial = 0;
    bool isLeft = true; ///< it sees the wheels on the left
    SensorPlace place = SensorPlace::Inner;
    double along = 0.0; ///< how far its usual pose is moved along the track, mm
    std::optional<Pose> pose = {}; ///< in the track; absent: the usual pose of its place
};

/// The most sensors that settings name.
inline constexpr int kMostSensors = 49;

/// Reads a layout from an INI file: sections SENSOR1, SENSOR2 and so on with the keys SN, side (left or right), place (inner
/// or field), and either along or x, y, z, alpha, beta, gamma. Throws a KxInspect::Error for a file that cannot be read,
/// and with its line for everything else that is in it, for missing keys, and for equal serial numbers.
std::vector<LayoutSensor> readLayout(const std::string& path);

} // namespace kxsim
