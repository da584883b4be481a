// Names of recordings, their directories and wheel files, and the sensors that made them.
#include "railway/recordings.h"

#include <QtCore/QSettings>
#include <QtCore/QVariant>

namespace KxMath::detail {

Recording::Recording(const QString& fileName) : name(fileName) {
    name.remove(QStringLiteral(".bin"), Qt::CaseSensitive); // every occurrence
    directory = QStringLiteral("./") + name;
    serial = name.mid(name.indexOf(QLatin1Char('_')) + 1).toInt();
}

QString Recording::wheelFile(int wheel, int profile) const {
    QString path;
    path.reserve(directory.size() + 16);
    const auto appendNumber = [&](int n) { // of two digits at least
        if (n >= 0 && n < 10) {
            path += QLatin1Char('0');
        }
        path += QString::number(n);
    };
    path += directory;
    path += QLatin1Char('/');
    appendNumber(wheel);
    path += QLatin1Char('_');
    appendNumber(profile);
    path += QLatin1String(".bin");
    return path;
}

QString sensorKey(int sensor, const char* key) {
    return QStringLiteral("SENSOR%1/").arg(sensor) + QLatin1String(key);
}

int findSensor(QSettings& settings, int serial) {
    constexpr int kEnd = 50;
    for (int sensor = 1; sensor < kEnd; ++sensor) {
        const int candidate = settings.value(sensorKey(sensor, "SN"), 0).toInt();
        if (candidate == serial) {
            return sensor;
        }
        if (candidate == 0) {
            return kNoSensor;
        }
    }
    return kEnd; // deliberately not a failure
}

KxLine readLine(QSettings& settings, const QString& slopeKey, float slope, const QString& interceptKey,
                float intercept) {
    return KxLine(settings.value(slopeKey, slope).toFloat(), settings.value(interceptKey, intercept).toFloat());
}

} // namespace KxMath::detail
