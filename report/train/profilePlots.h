// The profiles of wheel pairs in the page of a pass.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

namespace kxreport {

/// Adds a section for each pair that has pictures: how its profiles lie to the level line, and what the distance is
/// made from.
void addProfiles(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
