// Numbers as text, under the names of the commands.
#pragma once

#include "inspect/results/json.h"
#include "report/elements/numbers.h"

namespace kxtool {

using KxInspect::detail::jsonNumber;
using kxreport::fixedText;
using kxreport::shortestText;

} // namespace kxtool
