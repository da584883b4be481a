// The level line: where it may lie so that distances do not depend on it.
#pragma once

#include "inspect/station/backFaces.h"
#include "inspect/train/wheelCollector.h"

#include <KxMath/KxPrimitives.h>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// The records around one wheel, as they were recorded.
struct WheelRecords {
    int first = 0; ///< number of the first record
    std::vector<PointList> profiles;
    RecordRun face = {0, 0}; ///< the records that show its back face
    double away = 0.0; ///< of the back face, along FaceLine
    KxMath::KxLine line; ///< through all points of the face
    double fromX = 0.0; ///< where these points are
    double toX = 0.0;
};

/// Fits a line to all points of all records that are on the back face, and sets `line`, `fromX` and `toX`.
/// @param deviation points farther than this from the face are not of it, mm
/// @return false when there are fewer than 10 points
bool fitFace(const FaceLine& face, double deviation, WheelRecords& wheel);

/// The lines of a sensor.
struct SensorLines {
    KxMath::KxLine reference; ///< median of the wheels
    KxMath::KxLine level;
    double margin = 0.0; ///< of the level line beyond the farthest back face, in the middle of the faces, mm
    double fromMargin = 0.0; ///< the margins with which the faces are measured alike, mm
    double toMargin = 0.0;
    double turn = 0.0; ///< of the level line from the reference line, degrees
    /// The largest difference of an offset as a pass is measured from that of the line through the whole face, mm.
    double deviation = 0.0;
};

/// Finds the reference line and the level line.
///
/// A pass is measured by the first half of the points below the level line, in one profile. That half has to be on the
/// back face. The level line is therefore moved away from the faces step by step; the range of margins in which the
/// measured offsets of all wheels agree with their whole faces is found, and its middle taken: what is mounted so can
/// bear most change to both sides. Where no margin will do, as with flange first and face last in the order of the
/// points, the line is turned as well, so that it cuts off the flange.
/// @param wheels cleaned by the noise filter of the detection
/// @return nothing when there is no such line
std::optional<SensorLines> findLines(const FaceLine& face, const std::vector<WheelRecords>& wheels);

} // namespace KxInspect::detail
