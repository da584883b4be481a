// The profiles of one wheel pair in the report.
#pragma once

#include "inspect/train/pass.h"
#include "report/elements/page.h"

namespace kxtool {

/// Adds the section with the profiles of a pair: how they lie to the level line, and what the distance is made from.
/// @param pairNumber from 1 on
void addProfiles(const Pass& pass, int pairNumber, kxreport::Page& page);

} // namespace kxtool
