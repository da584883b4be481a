// Profiles as blocks of numbers of a page.
#pragma once

#include "report/elements/packedNumbers.h"
#include "report/view/viewPage.h"

#include <KxInspect/Profile.h>

#include <QtCore/QJsonObject>

#include <cstddef>
#include <vector>

namespace kxreport {

/// What was left out of a page.
struct LeftOut {
    std::size_t tooFar = 0; ///< finite numbers that the resolution does not reach
    bool isThinned = false; ///< not all points are on the page
};

/// Adds the points of profiles to a page: of `block` neighbours those that keptPoints() keeps.
/// @param names in parallel with the profiles, or empty
/// @return what the script reads
QJsonObject addProfiles(const std::vector<const KxInspect::Profile*>& profiles, const QStringList& names,
                        std::size_t block, const ViewSettings& settings, ViewPage& page, LeftOut& leftOut);

/// The heights of the points.
std::vector<float> heightsOf(const KxInspect::Profile& profile);

/// Says on the page what is not on it.
void tell(const LeftOut& leftOut, std::size_t block, ViewPage& page);

/// The numbers of points for each of which three stay, by levels of fittingPage(): 1, then more.
std::size_t blockAtLevel(int level);

} // namespace kxreport
