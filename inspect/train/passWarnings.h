// What makes the results of a pass doubtful.
#pragma once

#include "inspect/train/measuredSide.h"
#include "inspect/train/treadDefects.h"

#include <KxInspect/PassResult.h>

namespace KxInspect::detail {

/// Takes over the warnings of the settings of the judgement, where those of the station have not said the same.
void warnOfDefectSettings(const DefectSettings& settings, PassResult& result);

/// Warns of level lines that are the same for distances and treads: one of them comes from the wrong file.
void warnOfEqualLevels(const std::vector<MeasuredSide>& sides, PassResult& result);

/// Warns of lines for the treads between which no wheel of a side shows its tread.
/// @param cutOut what they cut out of the wheels
void warnOfTreadLines(const PassSide& side, const CutOut& cutOut, PassResult& result);

/// Warns of lines of the settings that do not fit the recording of a side: a level line that no point or every point is
/// below, and a reference line that is not parallel to the wheels.
void warnOfLines(const MeasuredSide& side, PassResult& result);

/// Warns of wheels that were not compared with circles, and of what the recording or the station does to most wheels of
/// a side, which looks like damage.
void warnOfShapes(const PassSide& side, bool hasPlaces, bool hasPose, PassResult& result);

} // namespace KxInspect::detail
