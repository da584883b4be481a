// What a pass was measured with: files, limits, settings.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

namespace kxreport {

/// Adds the files of a pass with their hashes, the limits, and all settings with their values.
void addMeasuredWith(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
