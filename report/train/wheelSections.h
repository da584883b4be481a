// The measures and cross-sections of wheels on the page of a pass.
#pragma once

#include <KxInspect/PassResult.h>

namespace kxreport {

class Page;

/// Adds a table with a row per wheel, and the cross-sections of the pairs that are shown; nothing for a pass whose wheels were
/// not measured.
void addWheelMeasures(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
