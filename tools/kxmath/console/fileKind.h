// The kind of a point file that an option or the file tells.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/PointFile.h>

namespace kxtool {

/// The kind that the option names, otherwise the one of the content or the ending of the file's name. Throws a CommandError
/// when none of them tells it.
/// @param hasContent the file exists
KxInspect::FileKind kindOfFile(const Options& options, const char* option, const QString& fileName, bool hasContent);

} // namespace kxtool
