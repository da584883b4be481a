// The profile set that is kept of a pass.
#pragma once

#include "inspect/train/measuredSide.h"

#include <KxInspect/PassResult.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// Writes the chosen profiles of the wheels of a pass and their cross-sections. Throws an Error when that fails.
/// @param sides the recordings of PassResult::sides
KeptProfiles writeKeptProfiles(const std::string& path, const std::vector<MeasuredSide>& sides,
                               const PassResult& result);

} // namespace KxInspect::detail
