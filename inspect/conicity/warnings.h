// Warnings: violated assumptions of the method, and limited validity of a result.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

namespace KxInspect::detail {

/// The assumptions that prepared profiles and their track violate, one sentence each.
std::vector<std::string> findContradictions(const PerWheelSetPart<Profile>& sections, const ConicityInput& input);

/// Why the wheel-set cannot stand between its rails, a sentence; empty when its flanges leave some clearance, or when
/// that is not known: where a rail is not cut at its gauge point, or a wheel does not reach its tape circle.
std::string whyNoFit(const PerWheelSetPart<Profile>& sections, const ConicityResult& result);

/// Whatever limits the validity of the result, one sentence each.
std::vector<std::string> findLimits(const ConicityResult& result);

/// How many amplitudes of a curve have no conicity, and why; empty where all have one.
QString missingAmplitudes(const ConicityResult& result);

} // namespace KxInspect::detail
