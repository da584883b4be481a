// What is studied: ten parts, three stations, ten measurements of each part at each station.
#pragma once

#include "tools/study/accuracy.h"

#include <functional>
#include <vector>

namespace kxstudy {

inline constexpr int kParts = 10;
inline constexpr int kStations = 3;
inline constexpr int kPasses = 10;

/// Called with what is being done, for people who wait.
using Report = std::function<void(const std::string& what)>;

/// What makes measurements by gauges differ, besides the noise of the points.
struct Causes {
    bool dirt = true;
    bool placing = true; ///< from one time that a gauge is set onto the metal to the next
    bool gauge = true; ///< the gauge's own errors
};

/// What makes the measures of a pass differ, besides the noise of the points.
struct PassCauses {
    bool dirt = true; ///< on treads and windows
    bool poses = true; ///< of the sensors are off as a calibration leaves them
};

/// @{ The values of each command.
std::vector<StudiedValue> studyTrain(const Report& report);
std::vector<StudiedValue> studyWheel(const Report& report, const Causes& causes = {});
std::vector<StudiedValue> studyPasses(const Report& report, const PassCauses& causes = {});
std::vector<StudiedValue> studyConicity(const Report& report);
std::vector<StudiedValue> studyCalibrate(const Report& report);
/// @}

} // namespace kxstudy
