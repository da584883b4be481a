// The settings of the judgement of treads.
#include "inspect/settings/iniFile.h"

#include <KxMath/KxWheelDetection.h>

#include <algorithm>

namespace KxInspect {

namespace {

using detail::IniFile;
using Need = IniFile::Need;

DefectLimits readLimits(IniFile& file) {
    const auto number = [&](const char* key, float byDefault) {
        return file.number(QLatin1String(key), Need::Optional).value_or(byDefault);
    };
    const auto wholeNumber = [&](const char* key, int byDefault) {
        return file.wholeNumber(QLatin1String(key), Need::Optional).value_or(byDefault);
    };
    DefectLimits limits;
    limits.maxDeviation = number("maxDeviation", limits.maxDeviation);
    limits.pointsHigher = wholeNumber("pointsHigher", limits.pointsHigher);
    limits.minProfiles = wholeNumber("minimalDefectsProf", limits.minProfiles);
    limits.maxRadiusDeviation = number("maxRadiusDeviation", limits.maxRadiusDeviation);
    limits.radiusProfiles = wholeNumber("radiusProfiles", limits.radiusProfiles);
    return limits;
}

} // namespace

DefectSettings detail::readDefects(const std::string& path, bool isStrict) {
    IniFile file(path);
    DefectSettings settings;
    settings.file = path;
    settings.source = file.identity();
    settings.limits = readLimits(file);
    if (isStrict && !file.faults().empty()) {
        const SettingFault& fault = file.faults().front();
        failSettings(path, fault.key, QString::fromStdString(fault.reason));
    }
    forEachSensor(file, [&](int number, int serial) {
        const auto line = [&](const char* slope, const char* intercept) {
            return file.line(KxMath::KxSensorKey(number, slope), KxMath::KxSensorKey(number, intercept));
        };
        settings.sensors.push_back({number, serial, line("level_k", "level_b"), line("lowLevel_k", "lowLevel_b")});
    });
    settings.faults = file.faults();
    settings.warnings = file.warnings();
    return settings;
}

DefectSettings readDefectSettings(const std::string& path) {
    return detail::readDefects(path, true);
}

const DefectLines* findSensor(const DefectSettings& settings, int serial) {
    const auto found = std::find_if(settings.sensors.begin(), settings.sensors.end(),
                                    [&](const DefectLines& sensor) { return sensor.serial == serial; });
    return found != settings.sensors.end() ? &*found : nullptr;
}

} // namespace KxInspect
