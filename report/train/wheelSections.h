// The cross-sections of wheels on the page of a pass.
#pragma once

#include <KxInspect/PassResult.h>

namespace kxreport {

class Page;

/// Adds the cross-section of each wheel, over the nominal contour and beside its deviation where there is one; nothing for a
/// pass whose wheels were not measured.
void addWheelSections(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
