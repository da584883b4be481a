// The defects of the treads in the report.
#pragma once

#include "inspect/train/pass.h"
#include "report/elements/page.h"

namespace kxtool {

/// The verdicts over all wheels, and of the wheels of one pair the profile that is farthest off its curve.
void addDefects(const Pass& pass, int pairNumber, kxreport::Page& page);

} // namespace kxtool
