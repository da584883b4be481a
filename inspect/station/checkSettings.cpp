// What is wrong with settings, by themselves and for recordings.
#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/settings/duplicateSerials.h"
#include "inspect/settings/iniFile.h"
#include "inspect/settings/settingKeys.h"
#include "inspect/station/recordingCheck.h"

#include <KxInspect/StationSetup.h>

#include <algorithm>

namespace KxInspect {

namespace {

using namespace detail;

constexpr int kFacing = 2; // sensors of a station

void add(SettingsCheck& check, bool isRefused, const std::string& key, const QString& text) {
    check.findings.push_back({isRefused, key, text.toStdString()});
}

bool isKnown(const SettingsCheck& check, const std::string& key) {
    return std::any_of(check.findings.begin(), check.findings.end(),
                       [&](const SettingsFinding& finding) { return finding.key == key; });
}

/// Faults of values. Those of the low lines are refused in mode 3 only.
void addFaults(const std::vector<SettingFault>& faults, const QString& file, bool hasLowLines, SettingsCheck& check) {
    for (const SettingFault& fault : faults) {
        const SettingKey* const key = findSettingKey(toQt(fault.key));
        const bool isLow = key != nullptr && key->needed == "mode 3" && !hasLowLines;
        const bool isMissing = toQt(fault.reason) == lacksKey(toQt(fault.key));
        if (isLow && isMissing) {
            continue;
        }
        add(check, !isLow, fault.key, QStringLiteral("settings '%1' %2").arg(file, toQt(fault.reason)));
    }
}

/// Keys that are needed of sensors whose serial number is missing: nobody has looked for them.
void addMissing(const std::string& path, SettingsKind kind, std::size_t sensors, bool hasLowLines,
                SettingsCheck& check) {
    IniFile file(path);
    for (int sensor = static_cast<int>(sensors) + 1; sensor <= kFacing; ++sensor) {
        for (const SettingKey& key : settingKeys()) {
            const bool isRead =
                key.settings == "both" || key.settings == (kind == SettingsKind::Station ? "station" : "defects");
            const bool isNeeded =
                key.needed == "always" || key.needed == "defects" || (key.needed == "mode 3" && hasLowLines);
            const QString name = KxMath::KxSensorKey(sensor, key.name.c_str());
            if (key.isPerSensor && isRead && isNeeded && !file.store().contains(name) &&
                !isKnown(check, name.toStdString())) {
                add(check, true, name.toStdString(),
                    QStringLiteral("settings '%1' %2").arg(toQt(path), lacksKey(name)));
            }
        }
    }
}

/// The line that has to be beyond another.
void addOrder(const QString& file, int sensor, const std::optional<Line>& back, const std::optional<Line>& front,
              const char* key, const char* text, SettingsCheck& check) {
    if (back && front && !(back->intercept > front->intercept)) {
        const QString name = KxMath::KxSensorKey(sensor, key);
        add(check, false, name.toStdString(),
            QStringLiteral("settings '%1': %2 of SENSOR%3 is not beyond %4 at x = 0: %5 and %6 mm")
                .arg(file, QString::fromLatin1(text).section(QLatin1Char('|'), 0, 0))
                .arg(sensor)
                .arg(QString::fromLatin1(text).section(QLatin1Char('|'), 1, 1))
                .arg(static_cast<double>(back->intercept))
                .arg(static_cast<double>(front->intercept)));
    }
}

template <typename Settings>
void addCommon(const Settings& settings, SettingsKind kind, bool hasLowLines, SettingsCheck& check) {
    const QString file = toQt(settings.file);
    addFaults(settings.faults, file, hasLowLines, check);
    addMissing(settings.file, kind, settings.sensors.size(), hasLowLines, check);
    for (const SettingFault& fault : duplicateSerials(settings)) {
        add(check, true, fault.key, QStringLiteral("settings '%1' %2").arg(file, toQt(fault.reason)));
    }
    for (const std::string& warning : settings.warnings) {
        add(check, false, {}, toQt(warning));
    }
}

} // namespace

bool SettingsCheck::isRefused() const {
    return std::any_of(findings.begin(), findings.end(), [](const SettingsFinding& f) { return f.isRefused; });
}

SettingsCheck checkSettings(const std::string& path, SettingsKind kind, const std::vector<std::string>& recordings,
                            int mode, const Progress& progress) {
    SettingsCheck check;
    const bool hasLowLines = mode == KxMath::KxModeWithLowLine;
    if (kind == SettingsKind::Defects) {
        const DefectSettings settings = readDefects(path, false);
        addCommon(settings, kind, hasLowLines, check);
        for (const DefectLines& sensor : settings.sensors) {
            addOrder(toQt(path), sensor.number, sensor.high, sensor.low, "level_b", "the high line|the low line",
                     check);
        }
        check.facts.push_back(QStringLiteral("%1 sensors").arg(settings.sensors.size()).toStdString());
        return check;
    }
    const StationSettings settings = readStationSettings(path);
    addCommon(settings, kind, hasLowLines, check);
    for (const SensorSettings& sensor : settings.sensors) {
        addOrder(toQt(path), sensor.number, sensor.level, sensor.reference, "level_b",
                 "the level line|the reference line", check);
        if (hasLowLines) {
            addOrder(toQt(path), sensor.number, sensor.reference, sensor.low, "b2", "the reference line|the low line",
                     check);
        }
    }
    check.facts.push_back(QStringLiteral("%1 sensors").arg(settings.sensors.size()).toStdString());
    if (!recordings.empty()) {
        checkRecordings(recordings, settings, mode, progress, check);
    }
    return check;
}

} // namespace KxInspect
