// The settings of sensors.
#pragma once

#include "KxMath/KxPrimitives.h"

#include <QtCore/QString>

class QSettings;

namespace KxMath::detail {

inline constexpr int kNoSensor = -1;

/// The number of the sensor with a serial number, from its settings. Without a match among the first 49 sensors it is
/// deliberately 50, the one after the last.
/// @return kNoSensor when the search meets a sensor without a serial number
int findSensor(QSettings& settings, int serial);

/// A line whose slope and intercept are settings, with their defaults.
KxLine readLine(QSettings& settings, const QString& slopeKey, float slope, const QString& interceptKey,
                float intercept);

} // namespace KxMath::detail
