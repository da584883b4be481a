// The calculation with prepared profiles.
#pragma once

#include <KxInspect/Conicity.h>

namespace KxInspect::detail {

/// Calculates the conicity of prepared profiles and stores curves, contacts and placed profiles in the result. Without a
/// conicity its reason is set.
void calculate(const PerWheelSetPart<Profile>& sections, const ConicityInput& input, ConicityResult& result);

/// The conicity of the curve at an amplitude, as conicityAt().
std::optional<float> conicityAt(const std::vector<Point>& curve, float amplitude);

/// Fills the fields that are interpolated in the curve of a result.
void lookUpAmplitudes(ConicityResult& result);

} // namespace KxInspect::detail
