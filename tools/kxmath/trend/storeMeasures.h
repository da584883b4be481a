// Which measures of a store are looked at, and their limits.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/Limits.h>

#include <vector>

namespace kxtool {

/// @{ --value, which may be given more than once; all measures of wheels without it.
void addMeasureOption(Options& options);
std::vector<KxInspect::MeasureInfo> measureOptions(const Options& options);
/// @}

/// @{ --limits; none without it.
void addLimitsOptionOfStore(Options& options);
KxInspect::Limits limitsOption(const Options& options);
/// @}

} // namespace kxtool
