// A new settings file that explains its keys.
#include "inspect/base/error.h"

#include <KxInspect/StationSetup.h>

#include <QtCore/QString>

#include <cmath>

namespace KxInspect {

namespace {

constexpr const char* kStationHead =
    "; Settings of a station, for kxmath train --settings. Lengths in mm, y of a profile being the distance from its\n"
    "; sensor. A key with a ; before it waits for its value, which kxmath settings fit finds from recordings. kxmath\n"
    "; settings check says what is still missing, and what does not fit recordings.\n";
constexpr const char* kDefectsHead =
    "; Settings for the judgement of treads, for kxmath train --defects. Lengths in mm, y of a profile being the\n"
    "; distance from its sensor. A key with a ; before it waits for its value, which kxmath settings fit --defects "
    "finds\n"
    "; from recordings. kxmath settings check --defects says what is still missing.\n";

QString numberText(double value) {
    constexpr double kDigits7 = 1e7; // beyond are whole numbers; below, floats are shown as they were written
    return QString::number(value, 'g', value < kDigits7 ? 7 : 10);
}

bool belongsTo(const SettingKey& key, SettingsKind kind) {
    return key.settings == "both" || key.settings == (kind == SettingsKind::Station ? "station" : "defects");
}

/// "; meaning: MIN to MAX UNIT; default or need"
QString explanation(const SettingKey& key) {
    const QString unit = key.unit.empty() ? QString() : QLatin1Char(' ') + QString::fromStdString(key.unit);
    const QString value = key.byDefault ? QStringLiteral("default %1").arg(numberText(*key.byDefault))
                                        : (key.needed == "mode 3" ? QStringLiteral("needed in mode 3")
                                           : key.needed.empty()   ? QStringLiteral("may be left out")
                                                                  : QStringLiteral("needed"));
    return QStringLiteral("; %1: %2%3 to %4%5; %6\n")
        .arg(QString::fromStdString(key.meaning), key.isWhole ? QStringLiteral("whole, ") : QString(),
             numberText(key.min), numberText(key.max), unit, value);
}

QString entry(const SettingKey& key, const QString& value) {
    const QString name = QString::fromStdString(key.name);
    return explanation(key) + (value.isEmpty() ? QLatin1Char(';') + name + QLatin1Char('=') : name + '=' + value) +
           QLatin1Char('\n');
}

QString defaultText(const SettingKey& key) {
    return key.byDefault ? numberText(*key.byDefault) : QString();
}

} // namespace

std::string newSettings(SettingsKind kind, const std::vector<int>& serials) {
    if (!serials.empty() && (serials.size() != 2 || serials[0] < 1 || serials[1] < 1 || serials[0] == serials[1])) {
        detail::fail(ErrorKind::BadArgument, {}, QStringLiteral("two different serial numbers above 0 are needed"));
    }
    QString text = QLatin1String(kind == SettingsKind::Station ? kStationHead : kDefectsHead);
    text += QStringLiteral("\n[General]\n");
    for (const SettingKey& key : settingKeys()) {
        text += !key.isPerSensor && belongsTo(key, kind) ? entry(key, defaultText(key)) : QString();
    }
    for (const std::size_t sensor : {std::size_t{0}, std::size_t{1}}) {
        text += QStringLiteral("\n[SENSOR%1]\n").arg(sensor + 1);
        for (const SettingKey& key : settingKeys()) {
            if (key.isPerSensor && belongsTo(key, kind)) {
                const bool isSerial = key.name == "SN" && !serials.empty();
                text += entry(key, isSerial ? QString::number(serials[sensor]) : defaultText(key));
            }
        }
    }
    return text.toStdString();
}

} // namespace KxInspect
