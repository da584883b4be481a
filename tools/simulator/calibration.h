// The settings that fit a simulated pass, as an ideal calibration would give them.
#pragma once

#include "simulator/parameters.h"
#include "simulator/pose.h"

#include <QtCore/QString>

namespace kxsim {

/// Lines in the frame of a sensor, all parallel to the back face of a wheel.
struct CalibratedLines {
    SensorLine reference; ///< a nominal back face
    SensorLine level; ///< behind the back faces, before web and tread
    SensorLine low; ///< before the back faces
    SensorLine treadLevel; ///< behind the tread
    SensorLine treadLow; ///< between flange and tread
};

CalibratedLines calibrate(const Parameters& parameters, int sensor);

/// Which points the lines for defects enclose.
enum class DefectBand { BackFace, Tread };

/// Writes the keys that detection, distances and defects read, with QSettings. The level line is shared by all of them:
/// for detection and distances it has to be that of DefectBand::BackFace, and defects of the tread show between those
/// of DefectBand::Tread.
/// @return false when the file could not be written
bool writeSettings(const QString& fileName, const Parameters& parameters, DefectBand band);

} // namespace kxsim
