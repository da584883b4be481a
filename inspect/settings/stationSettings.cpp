// The settings of a measuring station.
#include "inspect/settings/iniFile.h"

#include <KxMath/KxWheelDetection.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace KxInspect {

namespace {

using detail::IniFile;
using Need = IniFile::Need;

/// The values that the wheel detection of the core reads, with its defaults for missing keys.
WheelDetection readDetection(IniFile& file, int sensor) {
    for (const char* const key : {"wndSize", "higherPoinInWnd", "minPointsIn"}) {
        file.wholeNumber(KxMath::KxSensorKey(sensor, key), Need::Optional);
    }
    for (const char* const key : {"maxdY", "maxCorr", "parts", "maxDist"}) {
        file.number(KxMath::KxSensorKey(sensor, key), Need::Optional);
    }
    const auto s = KxMath::KxWheelDetectionSettings::read(file.store(), sensor);
    return {s.noiseWindow, s.maxJumps, s.maxJump, s.minPoints, s.maxParts, s.maxCorrelation, s.maxGap};
}

/// The angles of the pose, when all of them are there.
std::optional<SensorAngles> readAngles(IniFile& file, int sensor) {
    const auto angle = [&](const char* key) { return file.number(KxMath::KxSensorKey(sensor, key), Need::Optional); };
    const auto alpha = angle("alpha");
    const auto beta = angle("beta");
    const auto gamma = angle("gamma");
    if (!alpha || !beta || !gamma) {
        return {};
    }
    return SensorAngles{static_cast<double>(*alpha), static_cast<double>(*beta), static_cast<double>(*gamma)};
}

/// The origin of the pose, when all of it is there.
std::optional<SensorOrigin> readOrigin(IniFile& file, int sensor) {
    const auto place = [&](const char* key) { return file.number(KxMath::KxSensorKey(sensor, key), Need::Optional); };
    const auto x = place("x");
    const auto y = place("y");
    const auto z = place("z");
    if (!x || !y || !z) {
        return {};
    }
    return SensorOrigin{static_cast<double>(*x), static_cast<double>(*y), static_cast<double>(*z)};
}

/// The uncertainty of the pose, when all of it is there. One that is there in part is a warning.
std::optional<PoseUncertainty> readPoseUncertainty(IniFile& file, int sensor, std::vector<std::string>& warnings) {
    constexpr std::array<const char*, 6> kKeys = {"xUncertainty",     "yUncertainty",    "zUncertainty",
                                                  "alphaUncertainty", "betaUncertainty", "gammaUncertainty"};
    std::array<double, kKeys.size()> values = {};
    std::size_t found = 0;
    std::string missing;
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
        const auto value = file.number(KxMath::KxSensorKey(sensor, kKeys[i]), Need::Optional);
        values[i] = static_cast<double>(value.value_or(0.0f));
        found += value ? 1 : 0;
        missing = value || !missing.empty() ? missing : kKeys[i];
    }
    if (found == kKeys.size()) {
        return PoseUncertainty{values[0], values[1], values[2], values[3], values[4], values[5]};
    }
    if (found > 0) {
        warnings.push_back("the uncertainty of the pose of SENSOR" + std::to_string(sensor) +
                           " is not used: the key '" + missing + "' is missing");
    }
    return {};
}

std::optional<TrackSide> readSide(IniFile& file, int sensor) {
    const auto side = file.word(KxMath::KxSensorKey(sensor, "side"));
    return side ? std::optional(*side == 0 ? TrackSide::Left : TrackSide::Right) : std::nullopt;
}

SensorSettings readSensor(IniFile& file, int number, int serial, const StationSettings& settings,
                          std::vector<std::string>& warnings) {
    SensorSettings sensor;
    sensor.number = number;
    sensor.serial = serial;
    sensor.angles = readAngles(file, number);
    sensor.origin = readOrigin(file, number);
    sensor.side = readSide(file, number);
    sensor.poseUncertainty = readPoseUncertainty(file, number, warnings);
    const auto line = [&](const char* slope, const char* intercept, Need need = Need::Required) {
        return file.line(KxMath::KxSensorKey(number, slope), KxMath::KxSensorKey(number, intercept), need);
    };
    sensor.level = line("level_k", "level_b");
    sensor.low = line("lowlevel_k", "lowlevel_b");
    sensor.reference = line("k2", "b2", isOnFieldSide(sensor, settings) ? Need::Optional : Need::Required);
    sensor.detection = readDetection(file, number);
    return sensor;
}

} // namespace

StationSettings readStationSettings(const std::string& path) {
    IniFile file(path);
    StationSettings settings;
    settings.file = path;
    settings.source = file.identity();
    settings.baseDistance = file.number(QStringLiteral("calibrLines2"), Need::Required);
    settings.baseUncertainty = file.number(QStringLiteral("baseUncertainty"), Need::Optional);
    settings.minProfilesInWheel =
        file.wholeNumber(QStringLiteral("minProfsInWheel"), Need::Optional).value_or(settings.minProfilesInWheel);
    std::vector<std::string> warnings;
    forEachSensor(file, [&](int number, int serial) {
        settings.sensors.push_back(readSensor(file, number, serial, settings, warnings));
    });
    settings.faults = file.faults();
    settings.warnings = file.warnings();
    settings.warnings.insert(settings.warnings.end(), warnings.begin(), warnings.end());
    return settings;
}

const char* textOf(TrackSide side) {
    return side == TrackSide::Left ? "left" : "right";
}

bool isOnFieldSide(const SensorSettings& sensor, const StationSettings& settings) {
    return sensor.hasPose() && settings.baseDistance &&
           std::abs(sensor.origin->y) > static_cast<double>(*settings.baseDistance) / 2.0;
}

const SensorSettings* findSensor(const StationSettings& settings, int serial) {
    const auto found = std::find_if(settings.sensors.begin(), settings.sensors.end(),
                                    [&](const SensorSettings& sensor) { return sensor.serial == serial; });
    return found != settings.sensors.end() ? &*found : nullptr;
}

} // namespace KxInspect
