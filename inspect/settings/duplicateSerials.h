// Sensors that have the serial number of another.
#pragma once

#include <KxInspect/Settings.h>
#include <KxMath/KxWheelDetection.h>

#include <QtCore/QString>

#include <vector>

namespace KxInspect::detail {

/// Two sensors with one serial number: which of them a recording is of cannot be said.
/// @param settings of a station or of defects
template <typename Settings>
std::vector<SettingFault> duplicateSerials(const Settings& settings) {
    std::vector<SettingFault> faults;
    for (const auto& sensor : settings.sensors) {
        const auto* const first = findSensor(settings, sensor.serial);
        if (first != &sensor) {
            faults.push_back({KxMath::KxSensorKey(sensor.number, "SN").toStdString(),
                              QStringLiteral("give the serial number %1 to SENSOR%2 and to SENSOR%3")
                                  .arg(sensor.serial)
                                  .arg(first->number)
                                  .arg(sensor.number)
                                  .toStdString()});
        }
    }
    return faults;
}

} // namespace KxInspect::detail
