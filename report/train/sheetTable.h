// The sheet of a pass on its page: the verdict in words, the train, the worst wheels, a row for each wheel.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

namespace kxreport {

/// Adds all of it; to a pass without pairs only the verdict.
void addSheet(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
