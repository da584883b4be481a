// Numbers as text, in the namespace of the commands.
#pragma once

#include "report/elements/numbers.h"

namespace kxtool {

using kxreport::fixedText;
using kxreport::shortestText;
using kxreport::withInterval;

} // namespace kxtool
