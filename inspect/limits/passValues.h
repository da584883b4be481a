// The values of a pass by the names of their measures.
#pragma once

#include <KxInspect/PassResult.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// The side of the track that a recording is of, by the settings that were measured with.
std::optional<TrackSide> trackSideOf(const PassResult& result, std::size_t side);

/// The measures of the wheel of a pair on the side of a recording, both from 0; null where there are none.
const PassWheelMeasures* measuredWheel(const PassResult& result, std::size_t pair, std::size_t side);

/// All that a pass could give for a measure: one for each wheel, axle, bogie or vehicle, measured or with a reason. Without
/// verdicts.
std::vector<Assessment> valuesOf(const PassResult& result, const MeasureInfo& measure);

} // namespace KxInspect::detail
