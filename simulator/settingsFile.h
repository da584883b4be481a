// The settings file of a simulated pass.
#pragma once

#include "simulator/parameters.h"

#include <QtCore/QString>

namespace kxsim {

/// The points between the lines for defects.
enum class DefectBand { BackFace, Tread };

/// Writes the keys that detection, distances and defects read, as QSettings does. The level line is shared by all of them:
/// for detection and distances it has to be that of DefectBand::BackFace, and defects of the tread show between those
/// of DefectBand::Tread.
/// Throws a KxInspect::Error when the file could not be written.
void writeSettings(const QString& fileName, const Parameters& parameters, DefectBand band);

} // namespace kxsim
