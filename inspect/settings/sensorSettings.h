// The settings of a pass, checked before the library reads them with its silent defaults.
#pragma once

#include "inspect/recordings/recordingFile.h"

#include <KxMath/KxPrimitives.h>

#include <QtCore/QSettings>
#include <QtCore/QString>

#include <array>
#include <limits>
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

/// The lines between which the profiles of a sensor are judged for defects.
struct DefectLines {
    KxMath::KxLine high;
    KxMath::KxLine low;
};

/// When a profile and a wheel count as defective.
struct DefectLimits {
    float maxDeviation = 0.3f; ///< mm; points farther off the curve deviate
    int pointsHigher = 5; ///< the most deviating points of a sound profile
    int minProfiles = 1; ///< the most defective profiles of a sound wheel
    float maxRadiusDeviation = 0.1f; ///< mm; how far the tread may be off a circle about the axle
    int radiusProfiles = 3; ///< in so many successive profiles
    float fromX = -std::numeric_limits<float>::infinity(); ///< points with x outside of the range are left out
    float toX = std::numeric_limits<float>::infinity();
};

struct DefectSettings {
    QString fileName; ///< absolute
    std::array<DefectLines, 2> lines; ///< of the first and of the second recording
    DefectLimits limits;
};

/// Mode in which points must also lie above a low line.
inline constexpr int kModeWithLowLine = 3;

/// Reads the settings for two recordings. Throws a CommandError for a file that is missing or cannot be parsed, a
/// serial number that no sensor key names, a missing key whose default would make the distances worthless, and a value
/// that is no number.
TrainSettings readTrainSettings(const QString& name, const std::array<RecordingFile, 2>& recordings, int mode);

/// Reads the settings of the judgement of defects for two recordings. Throws a CommandError as readTrainSettings()
/// does.
DefectSettings readDefectSettings(const QString& name, const std::array<RecordingFile, 2>& recordings);

} // namespace kxtool
