// Poses in settings files that several processes may write at once.
#include "inspect/settings/settingsText.h"

#include <KxInspect/Calibration.h>

#include <limits>

namespace KxInspect {

PoseKeys poseKeysOf(const PoseAverage& average, int placement, int sensor) {
    SensorPose uncertainty = average.uncertainty;
    if (average.pose.y != average.foundY) {
        uncertainty.y = std::numeric_limits<double>::quiet_NaN();
    }
    return {sensor, average.pose, placement, uncertainty};
}

std::string readPoseSettings(const std::string& file) {
    return detail::readSettingsText(file);
}

void storePose(const std::string& file, const PoseKeys& keys, const Progress& progress) {
    detail::changeSettings(
        file, [&](const std::string& text) { return withPose(text, keys, file); }, progress);
}

} // namespace KxInspect
