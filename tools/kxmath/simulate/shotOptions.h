// Options of kxmath simulate for profiles of the calibration object.
#pragma once

#include "simulator/calibrationShots.h"
#include "tools/kxmath/console/options.h"

#include <optional>

namespace kxtool {

/// Adds --calibration and the options that belong to it.
void addShotOptions(Options& options);

/// The seed of the random numbers, for both kinds of simulation.
quint64 seedOption(const Options& options);

/// The shots to simulate when --calibration is given. Throws a CommandError for values out of range, and for options that
/// have no meaning with it or without it.
std::optional<kxsim::CalibrationShots> shotOptions(const Options& options);

} // namespace kxtool
