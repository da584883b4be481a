// A simulated pass from parameters to files.
#pragma once

#include "simulator/parameters.h"

#include <QtCore/QString>

#include <functional>

namespace kxsim {

/// Called from time to time with the completed part of the work, 0 to 1.
using Progress = std::function<void(double)>;

/// Writes a pass into a directory, which is created if missing: the recordings of all sensors
/// (PREFIX_SERIAL.bin; z of a record is the distance of the first axle past the sensors), settings.ini for detection and
/// distances, defects.ini for defects of the tread, truth.csv with the measures of the wheels, and at last truth.json. The parameters must be without a fault.
/// Throws a KxInspect::Error when one of them cannot be written; passes on what `progress` throws.
void simulatePass(const Parameters& parameters, const QString& directory, const Progress& progress);

} // namespace kxsim
