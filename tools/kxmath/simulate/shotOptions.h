// Options of kxmath simulate for profiles of the calibration object.
#pragma once

#include "simulator/calibrationShots.h"

#include <QtCore/QCommandLineParser>

#include <optional>

namespace kxtool {

/// Adds --calibration and the options that belong to it.
void addShotOptions(QCommandLineParser& parser);

/// The start of the random numbers, which both things to simulate take.
quint64 seedOption(const QCommandLineParser& parser);

/// What is to be simulated when --calibration is given. Throws a CommandError for values out of range, and for options
/// that have no meaning with it or without it.
std::optional<kxsim::CalibrationShots> shotOptions(const QCommandLineParser& parser);

} // namespace kxtool
