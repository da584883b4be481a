// One sensor of a station that is set up: what its recordings show.
#pragma once

#include "inspect/station/levelSearch.h"
#include "inspect/train/rawSample.h"

#include <KxInspect/StationSetup.h>

#include <QtCore/QString>

#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// A recording of the sensor.
struct SideRecording {
    std::string path;
    std::size_t wheels = 0; ///< how many it should show
    std::vector<StraightPart> parts;
    int records = 0;
    std::optional<BackFaces> faces;
};

struct StationSide {
    int serial = 0;
    std::vector<SideRecording> recordings; ///< by passes
    WheelDetection detection;
    double limit = 0.0; ///< deviation of straight parts, see straightLimit()
    RawSample sample; ///< of all recordings
    std::vector<WheelRecords> wheels; ///< of all recordings
    FaceLine face; ///< medians of all wheels
    std::optional<SensorLines> lines;
    int shortestWheel = 0;
    int longestOther = 0;
};

/// Reads the recordings for their straight parts and finds the back faces.
/// @return why that is not possible; empty when it is
QString findFaces(StationSide& side, const Progress& progress);

/// Reads the recordings again for the profiles of the wheels and finds the lines. Widens the jump that the filter of
/// noise lets pass where points are so sparse that it would remove the faces.
/// @return why that is not possible; empty when it is
QString findSensorLines(StationSide& side, const Progress& progress);

/// Reads the recordings once more to count the points below the level line, and sets what tells wheels from others:
/// the points of a profile and the records of a run.
/// @return why that is not possible; empty when it is
QString findThresholds(StationSide& side, const Progress& progress);

} // namespace KxInspect::detail
