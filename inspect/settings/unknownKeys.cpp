// Keys of settings files that nobody reads: misspelled, or in the wrong section.
#include "inspect/settings/settingKeys.h"

#include "inspect/base/nearestName.h"
#include "inspect/base/paths.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <optional>
#include <vector>

namespace KxInspect::detail {

namespace {

/// n of "SENSORn", which the list of sensors may reach.
std::optional<int> sensorNumber(const QString& section) {
    constexpr int kMostSensors = 49;
    const QString prefix = QStringLiteral("SENSOR");
    const int number = section.startsWith(prefix) ? section.mid(prefix.size()).toInt() : 0;
    const bool isName = number >= 1 && number <= kMostSensors && section == prefix + QString::number(number);
    return isName ? std::optional(number) : std::nullopt;
}

/// The known key that was probably meant, empty when none is near.
QString nearestKey(const QString& name, bool isPerSensor) {
    QStringList known;
    for (const SettingKey& key : settingKeys()) {
        if (key.isPerSensor == isPerSensor) {
            known += toQt(key.name);
        }
    }
    return nearestName(name, known);
}

/// What to say of an unknown key. `section` is empty for the keys in front of all sections.
QString adviceOn(const QString& section, const QString& name) {
    const bool isPerSensor = !section.isEmpty();
    if (findSettingKey(isPerSensor ? name : QStringLiteral("SENSOR1/") + name) != nullptr) {
        return isPerSensor ? QStringLiteral(": it belongs before the sections or in [General]")
                           : QStringLiteral(": it belongs in the section of a sensor, [SENSOR1]");
    }
    const QString nearest = nearestKey(name, isPerSensor);
    if (nearest.isEmpty()) {
        return {};
    }
    return QStringLiteral(": is '%1' meant?").arg(isPerSensor ? section + QLatin1Char('/') + nearest : nearest);
}

} // namespace

std::vector<std::string> warningsOfNames(const std::string& file, const QStringList& keys) {
    std::vector<std::string> warnings;
    const auto warn = [&](const QString& what) {
        warnings.push_back(QStringLiteral("settings '%1' %2").arg(toQt(file), what).toStdString());
    };
    QStringList sections;
    for (const QString& key : keys) {
        const qsizetype slash = key.indexOf(QLatin1Char('/'));
        const QString section = key.left(std::max<qsizetype>(slash, 0));
        const QString name = key.mid(slash + 1);
        if (slash >= 0 && !sensorNumber(section)) {
            if (!sections.contains(section)) { // may belong to another program: named once
                constexpr int kNear = 2;
                sections.append(section);
                const bool isNear = editDistance(section, QStringLiteral("SENSOR1")) <= kNear;
                warn(QStringLiteral("hold the unknown section [%1], which is not read%2")
                         .arg(section, isNear ? QStringLiteral(": is [SENSOR1] to [SENSOR49] meant?") : QString()));
            }
        } else if (findSettingKey(key) == nullptr) {
            warn(QStringLiteral("hold the unknown key '%1', which is not read%2").arg(key, adviceOn(section, name)));
        }
    }
    return warnings;
}

} // namespace KxInspect::detail
