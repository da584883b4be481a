// What the settings say of the sensor of a recording.
#include "inspect/train/sensorLookUp.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/settings/duplicateSerials.h"
#include "inspect/settings/iniFile.h"
#include "inspect/settings/settingKeys.h"

#include <KxInspect/KxMathTypes.h>

#include <algorithm>

namespace KxInspect::detail {

namespace {

/// Throws the fault of a key when it has one.
template <typename Settings>
void require(const Settings& settings, const QString& key) {
    const auto fault = std::find_if(settings.faults.begin(), settings.faults.end(),
                                    [&](const SettingFault& f) { return toQt(f.key) == key; });
    if (fault != settings.faults.end()) {
        failSettings(settings.file, fault->key, toQt(fault->reason));
    }
}

/// Throws an Error for a value that has no sense. Files were checked when they were read, programs fill in what they
/// like.
template <typename Settings>
void requireRange(const Settings& settings, const QString& key, double value) {
    const QString reason = whyOutOfRange(key, value);
    if (!reason.isEmpty()) {
        failSettings(settings.file, key.toStdString(), reason);
    }
}

template <typename Settings>
void requireDifferentSerials(const Settings& settings) {
    for (const SettingFault& fault : duplicateSerials(settings)) {
        failSettings(settings.file, fault.key, toQt(fault.reason));
    }
}

/// A line that must be there. Where it was read from a file, its keys tell which of them is missing.
template <typename Settings>
KxMath::KxLine requireLine(const Settings& settings, const std::optional<Line>& line, int sensor, const char* slope,
                           const char* intercept) {
    const QString slopeKey = KxMath::KxSensorKey(sensor, slope);
    require(settings, slopeKey);
    require(settings, KxMath::KxSensorKey(sensor, intercept));
    if (!line) {
        failSettings(settings.file, slopeKey.toStdString(), lacksKey(slopeKey));
    }
    requireRange(settings, slopeKey, static_cast<double>(line->slope));
    requireRange(settings, KxMath::KxSensorKey(sensor, intercept), static_cast<double>(line->intercept));
    return toKxLine(*line);
}

/// The sensor of a recording, looked for as the core does, but without its fallback to the keys of sensor 50.
template <typename Settings>
auto& requireSensor(const Settings& settings, const SideInput& side) {
    const int serial = side.name.parts.serial;
    const auto* const sensor = findSensor(settings, serial);
    if (sensor == nullptr) {
        const int next = settings.sensors.empty() ? 1 : settings.sensors.back().number + 1; // the search ended there
        require(settings, KxMath::KxSensorKey(next, "SN"));
        failSettings(settings.file, {},
                     QStringLiteral("name no sensor with the serial number %1 of recording '%2'")
                         .arg(serial)
                         .arg(toQt(side.path)));
    }
    return *sensor;
}

void requireDetectionKeys(const StationSettings& settings, const SensorSettings& sensor) {
    const auto requireGood = [&](const QString& key, double value) {
        require(settings, key);
        requireRange(settings, key, value);
    };
    requireGood(QStringLiteral("minProfsInWheel"), settings.minProfilesInWheel);
    const WheelDetection& d = sensor.detection;
    const std::pair<const char*, double> values[] = {{"wndSize", d.noiseWindow},
                                                     {"higherPoinInWnd", d.maxJumps},
                                                     {"minPointsIn", d.minPoints},
                                                     {"maxdY", static_cast<double>(d.maxJump)},
                                                     {"maxCorr", d.maxParts},
                                                     {"parts", static_cast<double>(d.maxCorrelation)},
                                                     {"maxDist", static_cast<double>(d.maxGap)}};
    for (const auto& [key, value] : values) {
        requireGood(KxMath::KxSensorKey(sensor.number, key), value);
    }
}

/// Throws an Error for a sensor that is not one of the two that face each other where there are no others.
void requireFacing(const StationSettings& settings, const SensorSettings& sensor, const SideInput& side) {
    if (sensor.number > 2) {
        failSettings(
            settings.file, {},
            QStringLiteral("name the serial number %1 of recording '%2' as SENSOR%3; distances need the facing "
                           "sensors SENSOR1 and SENSOR2")
                .arg(QString::number(sensor.serial), toQt(side.path), QString::number(sensor.number)));
    }
}

} // namespace

const SensorSettings& sensorOf(const StationSettings& settings, const SideInput& side) {
    return requireSensor(settings, side);
}

void lookUpSensor(const StationSettings& settings, int mode, SensorRole role, SideInput& side) {
    const SensorSettings& sensor = requireSensor(settings, side);
    if (role == SensorRole::Facing) {
        requireFacing(settings, sensor, side);
    }
    side.sensor = sensor.number;
    KxMath::KxWheelDetectionSettings& detection = side.detection;
    detection.level = requireLine(settings, sensor.level, sensor.number, "level_k", "level_b");
    if (role != SensorRole::Further) {
        side.reference = requireLine(settings, sensor.reference, sensor.number, "k2", "b2");
    }
    require(settings, KxMath::KxSensorKey(sensor.number, "side"));
    side.plane = laserPlaneOf(sensor);
    if (mode == KxMath::KxModeWithLowLine) {
        detection.low = requireLine(settings, sensor.low, sensor.number, "lowlevel_k", "lowlevel_b");
    }
    requireDetectionKeys(settings, sensor);
    detection.minProfilesInWheel = settings.minProfilesInWheel;
    detection.noiseWindow = sensor.detection.noiseWindow;
    detection.maxJumps = sensor.detection.maxJumps;
    detection.maxJump = sensor.detection.maxJump;
    detection.minPoints = sensor.detection.minPoints;
    detection.maxParts = sensor.detection.maxParts;
    detection.maxCorrelation = sensor.detection.maxCorrelation;
    detection.maxGap = sensor.detection.maxGap;
}

TreadLines lookUpTread(const DefectSettings& settings, const SideInput& side) {
    const DefectLines& lines = requireSensor(settings, side);
    return {requireLine(settings, lines.high, lines.number, "level_k", "level_b"),
            requireLine(settings, lines.low, lines.number, "lowLevel_k", "lowLevel_b")};
}

void requireGoodDefects(const DefectSettings& settings) {
    requireDifferentSerials(settings);
    const DefectLimits& l = settings.limits;
    requireRange(settings, QStringLiteral("maxDeviation"), static_cast<double>(l.maxDeviation));
    requireRange(settings, QStringLiteral("pointsHigher"), l.pointsHigher);
    requireRange(settings, QStringLiteral("minimalDefectsProf"), l.minProfiles);
    requireRange(settings, QStringLiteral("maxRadiusDeviation"), static_cast<double>(l.maxRadiusDeviation));
    requireRange(settings, QStringLiteral("radiusProfiles"), l.radiusProfiles);
}

void requireOwnSerials(const StationSettings& settings) {
    requireDifferentSerials(settings);
}

float requireBaseDistance(const StationSettings& settings) {
    const QString baseKey = QStringLiteral("calibrLines2");
    require(settings, baseKey);
    if (!settings.baseDistance) {
        failSettings(settings.file, baseKey.toStdString(), lacksKey(baseKey));
    }
    requireRange(settings, baseKey, static_cast<double>(*settings.baseDistance));
    return *settings.baseDistance;
}

} // namespace KxInspect::detail
