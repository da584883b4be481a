// The settings of a measuring station.
#include "inspect/settings/iniFile.h"

#include <KxMath/KxWheelDetection.h>

#include <algorithm>

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

SensorSettings readSensor(IniFile& file, int number, int serial) {
    const auto line = [&](const char* slope, const char* intercept) {
        return file.line(KxMath::KxSensorKey(number, slope), KxMath::KxSensorKey(number, intercept));
    };
    SensorSettings sensor;
    sensor.number = number;
    sensor.serial = serial;
    sensor.level = line("level_k", "level_b");
    sensor.low = line("lowlevel_k", "lowlevel_b");
    sensor.reference = line("k2", "b2");
    sensor.angles = readAngles(file, number);
    sensor.detection = readDetection(file, number);
    return sensor;
}

} // namespace

StationSettings readStationSettings(const std::string& path) {
    IniFile file(path);
    StationSettings settings;
    settings.file = path;
    settings.baseDistance = file.number(QStringLiteral("calibrLines2"), Need::Required);
    settings.baseUncertainty = file.number(QStringLiteral("baseUncertainty"), Need::Optional);
    settings.minProfilesInWheel =
        file.wholeNumber(QStringLiteral("minProfsInWheel"), Need::Optional).value_or(settings.minProfilesInWheel);
    forEachSensor(file, [&](int number, int serial) { settings.sensors.push_back(readSensor(file, number, serial)); });
    settings.faults = file.faults();
    settings.warnings = file.warnings();
    return settings;
}

const SensorSettings* findSensor(const StationSettings& settings, int serial) {
    const auto found = std::find_if(settings.sensors.begin(), settings.sensors.end(),
                                    [&](const SensorSettings& sensor) { return sensor.serial == serial; });
    return found != settings.sensors.end() ? &*found : nullptr;
}

} // namespace KxInspect
