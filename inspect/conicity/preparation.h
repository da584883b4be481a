// Preparing measured profiles for the calculation: which way they stand, where they begin, which side can touch.
#pragma once

#include <KxInspect/Conicity.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// Prepares a profile, and appends what was assumed and what is doubtful to the warnings. Throws an Error when it
/// shows no wheel or rail.
/// @return its file name, the number of dropped points, and whether it was cut
PlacedSection prepare(Profile& profile, WheelSetPart part, const ConicityInput& input,
                      std::vector<std::string>& warnings);

} // namespace KxInspect::detail
