// The calculation with prepared profiles.
#pragma once

#include "inspect/conicity/lateralSweep.h"

#include <KxInspect/Conicity.h>

namespace KxInspect::detail {

/// Calculates the conicity of prepared profiles and stores curves, contacts and placed profiles in the result. Without a
/// conicity its reason is set.
/// @param oscillation gives the curve unless the input asks for that of the core
void calculate(const PerWheelSetPart<Profile>& sections, const ConicityInput& input, const Oscillation& oscillation,
               ConicityResult& result);

/// Fills the rows of a result from its curve, `asMeasured` from that of the profiles as they were measured.
void fillRows(ConicityResult& result, const std::vector<Point>& curveAsMeasured);

/// The interval of a curve at an amplitude, also where its value is hidden by the noise; unknown outside the curve.
Interval bandAt(const ConicityResult& result, float amplitude);

/// How the wheel-set stands whose rails begin at their gauge points.
Stand standOf(const ConicityInput& input);

} // namespace KxInspect::detail
