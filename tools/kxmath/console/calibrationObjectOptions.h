// The options that describe the calibration object, shared by the commands that need it.
#pragma once

#include "tools/kxmath/console/options.h"

#include <KxInspect/CalibrationObject.h>

#include <array>
#include <vector>

namespace kxtool {

/// Adds --pitch, --slope, --oblique and --plane-y.
void addObjectOptions(Options& options);

/// The names of these options.
QStringList objectOptionNames();

/// The object that the options describe, as a sensor of the placement sees it; facing a side where that is given, unless
/// --oblique is. Throws a CommandError when no such object exists.
KxInspect::CalibrationObject objectOption(const Options& options, int placement,
                                          std::optional<KxInspect::SensorSide> side = {});

/// Adds --moved, which may be given more than once.
void addMovedOption(Options& options, const QString& help);

/// The values of --moved.
std::vector<std::array<double, 3>> movedOption(const Options& options);

/// Three numbers separated by commas, each within +-limit; `option` names them in the message.
std::array<double, 3> threeNumbers(const Options& options, const QString& text, const QString& option, double limit);

} // namespace kxtool
