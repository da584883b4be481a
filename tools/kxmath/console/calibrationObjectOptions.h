// Options that describe the calibration object, for all commands that need one.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/CalibrationObject.h>

namespace kxtool {

/// Adds --pitch, --slope, --oblique and --plane-y.
void addObjectOptions(Options& options);

/// The names of these options.
QStringList objectOptionNames();

/// The object as the options describe it, seen by a sensor of the placement. Throws a CommandError when there is no
/// such object.
KxInspect::CalibrationObject objectOption(const Options& options, int placement);

} // namespace kxtool
