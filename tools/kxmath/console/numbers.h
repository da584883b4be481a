// Numbers as text, under the names of the commands.
#pragma once

#include "report/elements/numbers.h"

namespace kxtool {

using kxreport::fixedText;
using kxreport::shortestText;

} // namespace kxtool
