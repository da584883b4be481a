// The recordings and settings of a pass, checked against each other before anything is read.
#include "inspect/train/passInputs.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/identity/passLabels.h"
#include "inspect/settings/duplicateSerials.h"
#include "inspect/settings/iniFile.h"
#include "inspect/settings/settingKeys.h"

#include <KxInspect/KxMathTypes.h>

#include <algorithm>

namespace KxInspect::detail {

namespace {

[[noreturn]] void failArgument(const QString& reason) {
    fail(ErrorKind::BadArgument, {}, reason);
}

void checkOptions(const PassOptions& options) {
    checkLabels(options.labels);
    if (!(options.tolerance >= 0.0f)) {
        failArgument(QStringLiteral("the tolerance must not be negative, it is %1").arg(options.tolerance));
    }
    for (const int pair : options.shownPairs) {
        if (pair < 1) {
            failArgument(QStringLiteral("wheel pairs are counted from 1, there is no pair %1").arg(pair));
        }
    }
}

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

void requireGoodLimits(const DefectSettings& settings) {
    const DefectLimits& l = settings.limits;
    requireRange(settings, QStringLiteral("maxDeviation"), static_cast<double>(l.maxDeviation));
    requireRange(settings, QStringLiteral("pointsHigher"), l.pointsHigher);
    requireRange(settings, QStringLiteral("minimalDefectsProf"), l.minProfiles);
    requireRange(settings, QStringLiteral("maxRadiusDeviation"), static_cast<double>(l.maxRadiusDeviation));
    requireRange(settings, QStringLiteral("radiusProfiles"), l.radiusProfiles);
}

void lookUpSensor(const StationSettings& settings, int mode, SideInput& side) {
    const SensorSettings& sensor = requireSensor(settings, side);
    if (sensor.number > 2) {
        failSettings(
            settings.file, {},
            QStringLiteral("name the serial number %1 of recording '%2' as SENSOR%3; distances need the facing "
                           "sensors SENSOR1 and SENSOR2")
                .arg(QString::number(sensor.serial), toQt(side.path), QString::number(sensor.number)));
    }
    side.sensor = sensor.number;
    KxMath::KxWheelDetectionSettings& detection = side.detection;
    detection.level = requireLine(settings, sensor.level, sensor.number, "level_k", "level_b");
    side.reference = requireLine(settings, sensor.reference, sensor.number, "k2", "b2");
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

} // namespace

SideInput openSide(const std::string& path) {
    SideInput side{path, RecordingFiles(path), nullptr, 0, {}, {}, {}};
    const ErrorSource source{"recording", path, {}};
    side.stream = std::make_unique<RecordStream>(source);
    if (side.name.parts.serial == 0) { // 0 is also what a missing key reads as
        fail(ErrorKind::Unsuitable, source,
             QStringLiteral("has no serial number after the first '_' of its name: '%1'").arg(side.name.serialText()));
    }
    return side;
}

void checkSidesDiffer(const SideInput& first, const SideInput& second) {
    if (first.name.file == second.name.file) {
        failArgument(
            QStringLiteral("both recordings are named '%1', so that their wheel files would mix").arg(first.name.file));
    }
    if (first.name.parts.serial == second.name.parts.serial) {
        failArgument(
            QStringLiteral("both recordings are of the sensor with the serial number %1").arg(first.name.parts.serial));
    }
}

SideInput openSide(const std::string& path, const StationSettings& settings, int mode) {
    SideInput side = openSide(path);
    requireDifferentSerials(settings);
    lookUpSensor(settings, mode, side);
    return side;
}

PassInputs openPass(const std::vector<std::string>& recordings, const StationSettings& settings,
                    const PassOptions& options) {
    checkOptions(options);
    if (recordings.size() != 2) {
        failArgument(QStringLiteral("a pass needs two recordings, not %1").arg(recordings.size()));
    }
    PassInputs inputs;
    for (const std::string& path : recordings) {
        inputs.sides.push_back(openSide(path));
        inputs.sides.back().stream->startHash();
    }
    checkSidesDiffer(inputs.sides[0], inputs.sides[1]);
    requireDifferentSerials(settings);
    for (SideInput& side : inputs.sides) {
        lookUpSensor(settings, options.mode, side);
    }
    const QString baseKey = QStringLiteral("calibrLines2");
    require(settings, baseKey);
    if (!settings.baseDistance) {
        failSettings(settings.file, baseKey.toStdString(), lacksKey(baseKey));
    }
    requireRange(settings, baseKey, static_cast<double>(*settings.baseDistance));
    inputs.baseDistance = *settings.baseDistance;
    if (options.defects) {
        requireDifferentSerials(*options.defects);
        requireGoodLimits(*options.defects);
    }
    for (SideInput& side : inputs.sides) {
        side.tread = options.defects ? std::optional(lookUpTread(*options.defects, side)) : std::nullopt;
    }
    return inputs;
}

} // namespace KxInspect::detail

namespace KxInspect {

void checkPass(const std::vector<std::string>& recordings, const StationSettings& settings,
               const PassOptions& options) {
    detail::openPass(recordings, settings, options);
}

} // namespace KxInspect
