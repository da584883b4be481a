// Names of recordings, their directories and wheel files, and the sensors that made them.
#pragma once

#include "KxMath/KxPrimitives.h"

#include <QtCore/QString>

class QSettings;

namespace KxMath::detail {

/// A recording as its file name tells it.
struct Recording {
    QString name; ///< the file name without ".bin"
    QString directory; ///< where its wheel files are
    int serial; ///< serial number of the sensor, 0 when the name holds no number

    explicit Recording(const QString& fileName);

    /// The file of one profile of one wheel.
    QString wheelFile(int wheel, int profile) const;
};

/// A key of one sensor, for example "SENSOR1/SN".
QString sensorKey(int sensor, const char* key);

inline constexpr int kNoSensor = -1;

/// The number of the sensor with a serial number, from its settings. Without a match among the first 49 sensors it is
/// deliberately 50, the one after the last.
/// @return kNoSensor when the search meets a sensor without a serial number
int findSensor(QSettings& settings, int serial);

/// A line whose slope and intercept are settings, with their defaults.
KxLine readLine(QSettings& settings, const QString& slopeKey, float slope, const QString& interceptKey,
                float intercept);

} // namespace KxMath::detail
