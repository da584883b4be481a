// What is looked for in the profile that a chain leaves.
#pragma once

#include <KxInspect/ProfileChain.h>

#include <vector>

namespace KxInspect::detail {

/// The fits and features that the options ask for.
/// @param points with both coordinates
std::vector<ProfileFinding> findingsOf(const std::vector<Point>& points, const ProfileOptions& options);

/// The same names, with a reason why nothing was looked for.
std::vector<ProfileFinding> nothingFound(const ProfileOptions& options, const std::string& reason);

} // namespace KxInspect::detail
