// The calculation with prepared profiles.
#pragma once

#include <KxInspect/Conicity.h>

namespace KxInspect::detail {

/// Calculates the conicity of prepared profiles and puts curves, contacts and placed profiles into the result. Where
/// there is no conicity its reason says why.
void calculate(const PerWheelSetPart<Profile>& sections, const ConicityInput& input, ConicityResult& result);

/// The conicity of the curve at an amplitude, as conicityAt().
std::optional<float> conicityAt(const std::vector<Point>& curve, float amplitude);

/// Fills what is looked up in the curve of a result.
void lookUpAmplitudes(ConicityResult& result);

} // namespace KxInspect::detail
