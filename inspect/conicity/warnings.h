// Warnings: violated assumptions of the method, and limited validity of a result.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

namespace KxInspect::detail {

/// The assumptions that prepared profiles and their track violate, one sentence each.
std::vector<std::string> findContradictions(const PerWheelSetPart<Profile>& sections, const ConicityInput& input);

/// Whatever limits the validity of the result, one sentence each.
std::vector<std::string> findLimits(const ConicityResult& result);

} // namespace KxInspect::detail
