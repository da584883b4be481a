// Storing a pose in a settings file without changing its other content.
#include "inspect/base/error.h"
#include "inspect/settings/iniText.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/Json.h>

#include <cmath>

namespace KxInspect {

namespace {

QList<detail::IniValue> valuesOf(const PoseKeys& keys) {
    const QByteArray section = "SENSOR" + QByteArray::number(keys.sensor);
    QList<detail::IniValue> values;
    for (const PoseField& field : kPoseFields) {
        if (const float value = static_cast<float>(keys.pose.*field.value); std::isfinite(value)) {
            values.append({section, field.name, QByteArray::fromStdString(shortestText(value))});
        }
    }
    values.append({section, "position", QByteArray::number(keys.placement)});
    for (const PoseField& field : kPoseFields) {
        const auto value = static_cast<float>(keys.uncertainty.*field.value);
        if (std::isfinite(keys.pose.*field.value)) {
            values.append({section, QByteArray(field.name) + "Uncertainty",
                           std::isfinite(value) ? QByteArray::fromStdString(shortestText(value)) : QByteArray(),
                           !std::isfinite(value)});
        }
    }
    return values;
}

} // namespace

std::string withPose(const std::string& settings, const PoseKeys& keys, const std::string& file) {
    constexpr int kMaxSensor = 49; // the largest number that recordings may have
    if (keys.sensor < 1 || keys.sensor > kMaxSensor) {
        detail::fail(
            ErrorKind::BadArgument, {"argument", {}, "sensor"},
            QStringLiteral("sensor needs a whole number from 1 to %1, got %2").arg(kMaxSensor).arg(keys.sensor));
    }
    return detail::withValues(settings, valuesOf(keys), file);
}

} // namespace KxInspect
