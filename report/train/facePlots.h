// The back face of a wheel over the places of its profiles, in the report.
#pragma once

#include "report/elements/page.h"
#include "report/train/shownWheel.h"

namespace kxreport {

/// The plot with its caption.
Figure facePlot(const ShownWheel& shown);

} // namespace kxreport
