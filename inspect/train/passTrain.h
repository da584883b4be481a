// The vehicles of a pass: its pairs numbered by the places of their axles.
#pragma once

#include "inspect/train/measuredSide.h"

#include <KxInspect/Train.h>

#include <vector>

namespace KxInspect::detail {

/// Fills in PassResult::train and WheelPair::axle.
void numberPairs(const std::vector<MeasuredSide>& sides, const PassOptions& options, PassResult& result);

} // namespace KxInspect::detail
