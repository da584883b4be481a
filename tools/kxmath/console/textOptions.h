// Options of the commands that read text files.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/TextForm.h>

namespace kxtool {

/// Adds the options --columns, --separator and --decimal.
/// @param hasZ points may have a z
void addTextOptions(Options& options, bool hasZ = false);

/// Their values. Throws a CommandError when they name no columns, separator or decimal sign.
KxInspect::TextOptions textOptions(const Options& options, bool hasZ = false);

} // namespace kxtool
