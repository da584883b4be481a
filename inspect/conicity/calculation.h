// The calculation with prepared profiles.
#pragma once

#include "inspect/conicity/lateralSweep.h"

#include <KxInspect/Conicity.h>

namespace KxInspect::detail {

/// Calculates the conicity of prepared profiles and stores curves, contacts and placed profiles in the result. Without a
/// conicity its reason is set.
void calculate(const PerWheelSetPart<Profile>& sections, const ConicityInput& input, ConicityResult& result);

/// Fills the rows of a result from its curve, `asMeasured` from that of the profiles as they were measured.
void fillRows(ConicityResult& result, const std::vector<Point>& curveAsMeasured);

/// How the wheel-set of a result stood that has contacts.
Stand standOf(const ConicityResult& result, float gauge, float backToBack);

} // namespace KxInspect::detail
