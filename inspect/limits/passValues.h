// The values of a pass by the names of their measures.
#pragma once

#include <KxInspect/PassResult.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// All that a pass could give for a measure: one for each wheel, axle, bogie or vehicle, measured or with a reason. Without
/// verdicts.
std::vector<Assessment> valuesOf(const PassResult& result, const MeasureInfo& measure);

} // namespace KxInspect::detail
