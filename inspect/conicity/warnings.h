// What contradicts the method, and what limits the meaning of a result.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

namespace KxInspect::detail {

/// Everything about prepared profiles and their track that contradicts the method, a sentence each.
std::vector<std::string> findContradictions(const PerWheelSetPart<Profile>& sections, const ConicityInput& input);

/// Everything about the result that limits its meaning, a sentence each.
std::vector<std::string> findLimits(const ConicityResult& result);

} // namespace KxInspect::detail
