// A fit of settings as text for the standard output.
#include "tools/kxmath/settings/fitText.h"

#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"

#include <algorithm>
#include <cmath>

namespace kxtool {

using namespace KxInspect;

namespace {

QString number(double value, int decimals) {
    return fixedText(static_cast<float>(value), decimals);
}

QString lineText(const std::optional<Line>& line) {
    return line ? QStringLiteral("%1 %2").arg(shortestText(line->slope), shortestText(line->intercept))
                : QStringLiteral("- -");
}

QString linesTable(const StationFit& fit) {
    std::vector<QStringList> rows = {
        {QStringLiteral("serial"), QStringLiteral("line"), QStringLiteral("slope"), QStringLiteral("intercept")}};
    for (const FittedSensor& sensor : fit.sensors) {
        const auto add = [&](const char* name, const std::optional<Line>& line) {
            const QStringList values = lineText(line).split(QLatin1Char(' '));
            rows.push_back({QString::number(sensor.serial), QLatin1String(name), values[0], values[1]});
        };
        add("reference", sensor.reference);
        add("level", sensor.level);
        add("low", sensor.low);
        if (sensor.treadHigh) {
            add("tread high", sensor.treadHigh);
            add("tread low", sensor.treadLow);
        }
    }
    return textTable(rows);
}

QString sensorText(const FittedSensor& sensor) {
    QString files;
    for (const std::string& file : sensor.files) {
        files += (files.isEmpty() ? QString() : QStringLiteral(", ")) + printable(QString::fromStdString(file));
    }
    QString text = QStringLiteral("Sensor %1: %2; %3 records").arg(sensor.serial).arg(files).arg(sensor.records);
    if (sensor.level) {
        text += QStringLiteral(", noise %1 mm, %2 wheels; level line %3 mm beyond the faces (%4 to %5 measure alike), "
                               "offsets differ by %6 mm from whole faces")
                    .arg(number(sensor.noise, 3))
                    .arg(sensor.wheels.size())
                    .arg(number(sensor.margin, 1), number(sensor.fromMargin, 1), number(sensor.toMargin, 1),
                         number(sensor.deviation, 3));
    }
    return text + QLatin1Char('\n');
}

QString pairsTable(const StationFit& fit) {
    std::vector<QStringList> rows = {{QStringLiteral("pass"), QStringLiteral("pair"), QStringLiteral("given"),
                                      QStringLiteral("measured"), QStringLiteral("residual")}};
    for (const FittedPair& pair : fit.pairs) {
        rows.push_back({QString::number(pair.pass), QString::number(pair.pair), number(pair.given, 3),
                        number(pair.measured, 3), number(pair.residual, 3)});
    }
    return textTable(rows);
}

} // namespace

QString fitText(const StationFit& fit) {
    QString text;
    for (const FittedSensor& sensor : fit.sensors) {
        text += sensorText(sensor);
    }
    const auto hasLines = [](const FittedSensor& sensor) { return sensor.reference.has_value(); };
    if (std::any_of(fit.sensors.begin(), fit.sensors.end(), hasLines)) {
        text += QLatin1Char('\n') + linesTable(fit);
    }
    if (!fit.pairs.empty()) {
        text += QLatin1Char('\n') + pairsTable(fit);
        text +=
            QStringLiteral("\nBase distance %1 mm; residuals %2 mm rms, %3 mm at most, of %4 distances. Wheels have "
                           "%5 profiles or more.\n")
                .arg(withInterval(fit.baseDistance, Interval::around(fit.baseDistance, fit.baseUncertainty), 3),
                     number(fit.rms(), 3), number(fit.largest(), 3))
                .arg(fit.known())
                .arg(fit.minProfilesInWheel);
        if (std::isnan(fit.baseUncertainty)) {
            text += QStringLiteral(
                "One distance does not tell how far the base distance may be off: no baseUncertainty.\n");
        }
    }
    return text;
}

} // namespace kxtool
