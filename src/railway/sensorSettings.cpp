// The settings of sensors.
#include "railway/sensorSettings.h"

#include "KxMath/KxWheelDetection.h"

#include <QtCore/QSettings>
#include <QtCore/QVariant>

namespace KxMath {

QString KxSensorKey(int sensor, const char* key) {
    return QStringLiteral("SENSOR%1/").arg(sensor) + QLatin1String(key);
}

int detail::findSensor(QSettings& settings, int serial) {
    constexpr int kEnd = 50;
    for (int sensor = 1; sensor < kEnd; ++sensor) {
        const int candidate = settings.value(KxSensorKey(sensor, "SN"), 0).toInt();
        if (candidate == serial) {
            return sensor;
        }
        if (candidate == 0) {
            return kNoSensor;
        }
    }
    return kEnd; // deliberately not a failure
}

KxLine detail::readLine(QSettings& settings, const QString& slopeKey, float slope, const QString& interceptKey,
                        float intercept) {
    return KxLine(settings.value(slopeKey, slope).toFloat(), settings.value(interceptKey, intercept).toFloat());
}

} // namespace KxMath
