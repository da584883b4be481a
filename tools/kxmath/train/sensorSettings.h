// The settings of a pass, checked before the library reads them with its silent defaults.
#pragma once

#include "train/recordingFile.h"

#include <KxMath/KxPrimitives.h>

#include <QtCore/QSettings>
#include <QtCore/QString>

#include <array>
#include <memory>

namespace kxtool {

/// The lines of one sensor.
struct Sensor {
    int number = 0; ///< n of the keys SENSORn/...
    KxMath::KxLine level; ///< points below it are the wheel
    KxMath::KxLine low; ///< in the mode with a low line: points above it only
    KxMath::KxLine reference; ///< where the wheel stands when the distance is the base distance
};

struct TrainSettings {
    std::unique_ptr<QSettings> store; ///< never written to
    std::array<Sensor, 2> sensors; ///< of the first and of the second recording
    float baseDistance = 0.0f;
};

/// Mode in which points must also lie above a low line.
inline constexpr int kModeWithLowLine = 3;

/// Reads the settings for two recordings. Throws a CommandError for a file that is missing or cannot be parsed, a
/// serial number that no sensor key names, a missing key whose default would make the distances worthless, and a value
/// that is no number.
TrainSettings readTrainSettings(const QString& name, const std::array<RecordingFile, 2>& recordings, int mode);

} // namespace kxtool
