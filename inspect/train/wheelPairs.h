// The wheel pairs of a pass.
#pragma once

#include "inspect/train/measuredSide.h"
#include "inspect/train/pairing.h"

#include <KxInspect/PassResult.h>

namespace KxInspect::detail {

/// Joins the wheels of both sides: by place where the records of both have a z that rises, else by the gaps between the
/// wheels. Adds warnings of wheels without partner and of pairs that are doubtful.
Pairing pairWheels(const std::vector<MeasuredSide>& sides, PassResult& result);

} // namespace KxInspect::detail
