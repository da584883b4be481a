// The defects of the treads in the page of a pass.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

namespace kxreport {

/// The verdicts over all wheels, and for each pair that has pictures the profile that is farthest off its curve and the
/// radii of the tread.
void addDefects(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
