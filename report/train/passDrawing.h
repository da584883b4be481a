// The train of a pass as a picture.
#pragma once

#include "report/elements/page.h"
#include "report/train/wheelVerdicts.h"

#include <vector>

namespace kxreport {

/// Adds the picture: vehicles as they passed, the first one on the left, with a mark for each wheel that links to its row.
void addTrain(const KxInspect::PassResult& pass, const std::vector<WheelVerdict>& verdicts, Page& page);

} // namespace kxreport
