// The values of what is found in a profile.
#pragma once

#include <KxInspect/ProfileChain.h>

#include <cstddef>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// The values that a finding has, in their order, with keys, titles and units; their numbers are NaN. Empty for a name
/// that no finding has.
/// @param name of the finding
/// @param coefficients how many a polynomial has; others have none
std::vector<ProfileValue> valuesWithoutNumbers(const std::string& name, std::size_t coefficients = 0);

} // namespace KxInspect::detail
