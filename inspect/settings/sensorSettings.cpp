// The settings of a pass, checked before the library reads them with its silent defaults.
#include "inspect/settings/sensorSettings.h"

#include "tools/kxmath/console/commandError.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cmath>

namespace kxtool {

namespace {

/// The settings file with its name for messages.
struct Checked {
    QSettings& store;
    QString name;

    [[noreturn]] void fail(const QString& why) const {
        throw CommandError{BadInput, QStringLiteral("settings '%1' %2").arg(name, why)};
    }

    QVariant required(const QString& key) const {
        const QVariant value = store.value(key);
        if (!value.isValid()) {
            fail(QStringLiteral("lack the key '%1'").arg(key));
        }
        return value;
    }

    float requiredNumber(const QString& key) const { return number(key, required(key)); }

    float number(const QString& key, const QVariant& value) const {
        bool isNumber = false;
        const float result = value.toFloat(&isNumber);
        if (!isNumber || !std::isfinite(result)) {
            fail(QStringLiteral("hold no number in '%1'").arg(key));
        }
        return result;
    }

    int wholeNumber(const QString& key, const QVariant& value) const {
        bool isNumber = false;
        const int result = value.toInt(&isNumber);
        if (!isNumber) {
            fail(QStringLiteral("hold no whole number in '%1'").arg(key));
        }
        return result;
    }

    KxMath::KxLine requiredLine(const QString& slopeKey, const QString& interceptKey) const {
        return {requiredNumber(slopeKey), requiredNumber(interceptKey)};
    }
};

QString sensorKey(int sensor, const char* key) {
    return QStringLiteral("SENSOR%1/%2").arg(sensor).arg(QLatin1String(key));
}

std::unique_ptr<QSettings> openSettings(const QString& name) {
    const QFileInfo info(name);
    const auto fail = [&](const QString& why) {
        throw CommandError{BadInput, QStringLiteral("settings '%1' %2").arg(name, why)};
    };
    if (!info.exists()) {
        fail(QStringLiteral("do not exist"));
    }
    if (!info.isFile()) {
        fail(QStringLiteral("are not a file"));
    }
    QFile file(info.absoluteFilePath());
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("cannot be read: ") + file.errorString());
    }
    auto store = std::make_unique<QSettings>(info.absoluteFilePath(), QSettings::IniFormat);
    store->allKeys(); // sections are parsed when they are first looked into
    if (store->status() != QSettings::NoError) {
        fail(QStringLiteral("cannot be parsed as an INI file"));
    }
    return store;
}

/// The number of the sensor with the serial number of the recording, found as detection finds it, but without its
/// fallback to the keys of sensor 50.
int findSensor(const Checked& settings, const RecordingFile& recording) {
    constexpr int kEnd = 50;
    for (int sensor = 1; sensor < kEnd; ++sensor) {
        const QString key = sensorKey(sensor, "SN");
        const QVariant value = sensor == 1 ? settings.required(key) : settings.store.value(key, 0);
        const int serial = settings.wholeNumber(key, value);
        if (serial == recording.serial) {
            return sensor;
        }
        if (serial == 0) {
            break;
        }
    }
    settings.fail(QStringLiteral("name no sensor with the serial number %1 of recording '%2'")
                      .arg(recording.serial)
                      .arg(recording.name));
}

/// Keys that may be missing must be numbers where they are there: the library would read other text as 0.
void checkOptionalKeys(const Checked& settings, int sensor) {
    const auto check = [&](const QString& key, bool isWhole) {
        const QVariant value = settings.store.value(key);
        if (value.isValid()) {
            isWhole ? static_cast<void>(settings.wholeNumber(key, value))
                    : static_cast<void>(settings.number(key, value));
        }
    };
    check(QStringLiteral("minProfsInWheel"), true);
    for (const char* const key : {"wndSize", "higherPoinInWnd", "minPointsIn"}) {
        check(sensorKey(sensor, key), true);
    }
    for (const char* const key : {"maxdY", "maxCorr", "parts", "maxDist"}) {
        check(sensorKey(sensor, key), false);
    }
}

Sensor readSensor(const Checked& settings, const RecordingFile& recording, int mode) {
    Sensor sensor;
    sensor.number = findSensor(settings, recording);
    if (sensor.number > 2) {
        settings.fail(QStringLiteral("name the serial number %1 of recording '%2' as SENSOR%3; distances need the "
                                     "facing sensors SENSOR1 and SENSOR2")
                          .arg(QString::number(recording.serial), recording.name, QString::number(sensor.number)));
    }
    const auto line = [&](const char* slope, const char* intercept) {
        return settings.requiredLine(sensorKey(sensor.number, slope), sensorKey(sensor.number, intercept));
    };
    sensor.level = line("level_k", "level_b");
    sensor.reference = line("k2", "b2");
    if (mode == kModeWithLowLine) {
        sensor.low = line("lowlevel_k", "lowlevel_b");
    }
    checkOptionalKeys(settings, sensor.number);
    return sensor;
}

} // namespace

TrainSettings readTrainSettings(const QString& name, const std::array<RecordingFile, 2>& recordings, int mode) {
    TrainSettings settings;
    settings.store = openSettings(name);
    const Checked checked{*settings.store, name};
    for (size_t side = 0; side < recordings.size(); ++side) {
        settings.sensors[side] = readSensor(checked, recordings[side], mode);
    }
    settings.baseDistance = checked.requiredNumber(QStringLiteral("calibrLines2"));
    return settings;
}

DefectSettings readDefectSettings(const QString& name, const std::array<RecordingFile, 2>& recordings) {
    const std::unique_ptr<QSettings> store = openSettings(name);
    const Checked checked{*store, name};
    const auto value = [&](const char* key, const auto& missing) {
        return store->value(QLatin1String(key), QVariant::fromValue(missing));
    };
    DefectSettings settings;
    settings.fileName = store->fileName();
    DefectLimits& limits = settings.limits;
    limits.maxDeviation = checked.number("maxDeviation", value("maxDeviation", limits.maxDeviation));
    limits.pointsHigher = checked.wholeNumber("pointsHigher", value("pointsHigher", limits.pointsHigher));
    limits.minProfiles = checked.wholeNumber("minimalDefectsProf", value("minimalDefectsProf", limits.minProfiles));
    limits.maxRadiusDeviation =
        checked.number("maxRadiusDeviation", value("maxRadiusDeviation", limits.maxRadiusDeviation));
    limits.radiusProfiles = checked.wholeNumber("radiusProfiles", value("radiusProfiles", limits.radiusProfiles));
    for (size_t side = 0; side < recordings.size(); ++side) {
        const int sensor = findSensor(checked, recordings[side]);
        const auto line = [&](const char* slope, const char* intercept) {
            return checked.requiredLine(sensorKey(sensor, slope), sensorKey(sensor, intercept));
        };
        settings.lines[side] = {line("level_k", "level_b"), line("lowLevel_k", "lowLevel_b")};
    }
    return settings;
}

} // namespace kxtool
