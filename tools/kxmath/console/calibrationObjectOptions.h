// The options that describe the calibration object, shared by the commands that need it.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/CalibrationObject.h>

namespace kxtool {

/// Adds --pitch, --slope, --oblique and --plane-y.
void addObjectOptions(Options& options);

/// The names of these options.
QStringList objectOptionNames();

/// The object that the options describe, as a sensor of the placement sees it. Throws a CommandError when no such object
/// exists.
KxInspect::CalibrationObject objectOption(const Options& options, int placement);

} // namespace kxtool
