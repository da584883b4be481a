// Options of the commands that read profiles.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/ProfileFile.h>

namespace kxtool {

/// Adds the option --columns.
void addColumnsOption(Options& options);

/// The value of --columns. Throws a CommandError unless it names two columns.
KxInspect::Columns columnsOption(const Options& options);

} // namespace kxtool
