// The keys of a fitted station in the text of settings.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/settings/iniText.h"
#include "inspect/settings/settingsText.h"

#include <KxInspect/Json.h>
#include <KxInspect/StationSetup.h>
#include <KxMath/KxWheelDetection.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace KxInspect {

namespace {

using detail::IniValue;
using detail::toQt;
using Values = QList<IniValue>;

[[noreturn]] void failText(const std::string& file, const QString& why) {
    detail::fail(ErrorKind::Unsuitable, {"settings", file, {}}, why);
}

constexpr int kMostSensors = 49;

QByteArray sectionOf(int sensor) {
    return "SENSOR" + QByteArray::number(sensor);
}

/// The serial numbers that a text gives to sensors, 0 where it gives none.
std::array<int, kMostSensors + 1> serialsIn(const std::string& text, const std::string& file) {
    const QMap<QString, QVariant> values = detail::valuesIn(text, file);
    std::array<int, kMostSensors + 1> serials = {};
    for (int sensor = 1; sensor <= kMostSensors; ++sensor) {
        serials[static_cast<std::size_t>(sensor)] = values[KxMath::KxSensorKey(sensor, "SN")].toInt();
    }
    return serials;
}

/// The number of each sensor of the fit: that which the text gives to its serial number, else the first free one.
std::vector<int> numbersOf(const std::string& text, const StationFit& fit, const std::string& file) {
    std::array<int, kMostSensors + 1> serials = serialsIn(text, file);
    std::vector<int> numbers;
    for (const FittedSensor& sensor : fit.sensors) {
        auto at = std::find(serials.begin() + 1, serials.end(), sensor.serial);
        if (at == serials.end()) {
            at = std::find(serials.begin() + 1, serials.end(), 0);
        }
        const auto number = static_cast<int>(at - serials.begin());
        if (number > 2) { // distances are measured with the first two
            failText(file, QStringLiteral("give SENSOR1 and SENSOR2 to the serial numbers %1 and %2, not to %3")
                               .arg(serials[1])
                               .arg(serials[2])
                               .arg(sensor.serial));
        }
        *at = sensor.serial;
        numbers.push_back(number);
    }
    return numbers;
}

QByteArray textOf(float value) {
    return QByteArray::fromStdString(shortestText(value));
}

void addLine(const QByteArray& section, const char* slope, const char* intercept, const std::optional<Line>& line,
             Values& values) {
    if (line) {
        values.append({section, slope, textOf(line->slope)});
        values.append({section, intercept, textOf(line->intercept)});
    }
}

void addStation(const QByteArray& section, const FittedSensor& sensor, Values& values) {
    addLine(section, "level_k", "level_b", sensor.level, values);
    addLine(section, "k2", "b2", sensor.reference, values);
    addLine(section, "lowlevel_k", "lowlevel_b", sensor.low, values);
    values.append({section, "minPointsIn", QByteArray::number(sensor.detection.minPoints)});
    if (sensor.detection.maxJump != WheelDetection().maxJump) {
        values.append({section, "maxdY", textOf(sensor.detection.maxJump)});
    }
}

} // namespace

std::string withFit(const std::string& text, const StationFit& fit, SettingsKind kind, const std::string& file) {
    if (!fit.hasSettings()) {
        detail::fail(ErrorKind::NoResult, {}, toQt(fit.fault));
    }
    Values values;
    if (kind == SettingsKind::Station) {
        values.append({"General", "calibrLines2", textOf(fit.baseDistance)});
        // One that an earlier fit left would be wrong.
        const bool isKnown = std::isfinite(fit.baseUncertainty);
        values.append({"General", "baseUncertainty", isKnown ? textOf(fit.baseUncertainty) : QByteArray(), !isKnown});
        values.append({"General", "minProfsInWheel", QByteArray::number(fit.minProfilesInWheel)});
    }
    const std::vector<int> numbers = numbersOf(text, fit, file);
    for (std::size_t i = 0; i < fit.sensors.size(); ++i) {
        const FittedSensor& sensor = fit.sensors[i];
        const QByteArray section = sectionOf(numbers[i]);
        values.append({section, "SN", QByteArray::number(sensor.serial)});
        if (kind == SettingsKind::Station) {
            addStation(section, sensor, values);
        } else if (!sensor.treadHigh || !sensor.treadLow) {
            detail::fail(ErrorKind::NoResult, {},
                         QStringLiteral("no lines of the tread were looked for with sensor %1").arg(sensor.serial));
        } else {
            addLine(section, "level_k", "level_b", sensor.treadHigh, values);
            addLine(section, "lowLevel_k", "lowLevel_b", sensor.treadLow, values);
        }
    }
    return detail::withValues(text, values, file);
}

void checkFitTarget(const std::string& file, const std::vector<int>& serials) {
    StationFit fit;
    for (const int serial : serials) {
        FittedSensor sensor;
        sensor.serial = serial;
        fit.sensors.push_back(sensor);
    }
    withFit(detail::readSettingsText(file), fit, SettingsKind::Station, file);
}

void storeFit(const std::string& file, const StationFit& fit, SettingsKind kind, const Progress& progress) {
    detail::changeSettings(
        file, [&](const std::string& text) { return withFit(text, fit, kind, file); }, progress);
}

} // namespace KxInspect
