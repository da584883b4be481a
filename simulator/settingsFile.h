// The settings file of a simulated pass.
#pragma once

#include "simulator/parameters.h"

#include <QtCore/QString>

namespace kxsim {

/// The points between the lines for defects.
enum class DefectBand { BackFace, Tread };

/// Writes the keys that detection, distances and defects read, with QSettings. The level line is shared by all of them:
/// for detection and distances it has to be that of DefectBand::BackFace, and defects of the tread show between those
/// of DefectBand::Tread.
/// @return false when the file could not be written
bool writeSettings(const QString& fileName, const Parameters& parameters, DefectBand band);

} // namespace kxsim
