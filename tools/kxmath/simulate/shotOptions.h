// Options of kxmath simulate for profiles of the calibration object.
#pragma once

#include "simulator/calibrationShots.h"
#include "tools/kxmath/console/options.h"

#include <optional>

namespace kxtool {

/// Adds --calibration and the options that belong to it.
void addShotOptions(Options& options);

/// The start of the random numbers, which both things to simulate take.
quint64 seedOption(const Options& options);

/// What is to be simulated when --calibration is given. Throws a CommandError for values out of range, and for options
/// that have no meaning with it or without it.
std::optional<kxsim::CalibrationShots> shotOptions(const Options& options);

} // namespace kxtool
