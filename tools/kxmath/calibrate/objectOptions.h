// Options that describe the calibration object.
#pragma once

#include "simulator/calibrationObject.h"

#include <QtCore/QCommandLineParser>

namespace kxtool {

/// Adds --pitch, --slope, --oblique and --plane-y.
void addObjectOptions(QCommandLineParser& parser);

/// The names of these options.
QStringList objectOptionNames();

/// A placement code given to an option. Throws a CommandError when it is none.
int placementOption(const QCommandLineParser& parser, const QString& name);

/// The object as the options tell it, seen by a sensor of the placement. Throws a CommandError when there is no such
/// object.
kxsim::CalibrationObject objectOption(const QCommandLineParser& parser, int placement);

} // namespace kxtool
