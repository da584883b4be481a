// A simulated pass from parameters to files.
#pragma once

#include "simulator/parameters.h"

#include <QtCore/QString>

#include <functional>

namespace kxsim {

/// Called now and then with the share of the work that is done, 0 to 1.
using Progress = std::function<void(double)>;

/// Writes a pass into a directory, which is made where it is missing: the recordings of both sensors
/// (PREFIX_SERIAL.bin; z of a record tells how far the first axle is past the sensors), settings.ini for detection and
/// distances, defects.ini for defects of the tread, and at last truth.json. The parameters must be without a fault.
/// @return what could not be written, in one line; empty when all was
QString simulatePass(const Parameters& parameters, const QString& directory, const Progress& progress);

} // namespace kxsim
