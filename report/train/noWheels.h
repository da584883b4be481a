// The part of a page that says why no wheel was found in a recording.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

namespace kxreport {

/// For each side without wheels: a warning, and raw profiles with the lines of the sensor. Nothing where both have some.
void addRawProfiles(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
