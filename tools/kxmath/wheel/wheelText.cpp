// The results of kxmath wheel as text.
#include "tools/kxmath/wheel/wheelText.h"

#include "report/elements/fileNames.h"
#include "report/elements/textList.h"
#include "report/wheel/wheelWords.h"
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/console/printable.h"

#include <limits>

namespace kxtool {

namespace {

using KxInspect::kWheelMeasures;
using KxInspect::WheelMeasure;
using KxInspect::WheelResult;

/// The measure, NaN when it was not found.
float valueOf(const WheelResult& result, const WheelMeasure& measure) {
    return (result.measures.*measure.value).value_or(std::numeric_limits<float>::quiet_NaN());
}

/// The line of a measure: its value with the interval, and what its limit says; or why it is missing.
QString line(const WheelResult& result, std::size_t i, const KxInspect::WheelLimits& limits) {
    constexpr int kTitleWidth = 30;
    constexpr int kValueWidth = 24;
    const WheelMeasure& measure = kWheelMeasures[i];
    const KxInspect::Limit& limit = limits.*measure.limit;
    const std::optional<float>& value = result.measures.*measure.value;
    QString text = QStringLiteral("  ") + QString(QLatin1String(measure.title)).leftJustified(kTitleWidth);
    if (!value) {
        return text + QStringLiteral(" -  (%1)\n").arg(QString::fromStdString(result.reasons[i]));
    }
    QString number = withInterval(*value, result.intervals[i], measure.decimals);
    number += qstrlen(measure.unit) > 0 ? QLatin1Char(' ') + QLatin1String(measure.unit) : QString();
    if (!result.intervalReasons[i].empty()) {
        number += QStringLiteral(" (no interval: %1)").arg(QString::fromStdString(result.intervalReasons[i]));
    }
    if (!limit.isSet()) {
        return text + QLatin1Char(' ') + number + QLatin1Char('\n');
    }
    text += QLatin1Char(' ') + number.leftJustified(kValueWidth) + QStringLiteral("  allowed ");
    text += kxreport::limitText(limit);
    return text + (limit.holds(value) ? QStringLiteral("\n") : QStringLiteral(": outside\n"));
}

/// Why measures and intervals are missing.
QString reasons(const WheelResult& result) {
    if (!result.isMeasured()) {
        return QString::fromStdString(result.reasons.front());
    }
    QStringList texts;
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        if (!result.reasons[i].empty()) {
            texts.append(QLatin1String(kWheelMeasures[i].key) + QStringLiteral(": ") +
                         QString::fromStdString(result.reasons[i]));
        }
        if (!result.intervalReasons[i].empty()) {
            texts.append(
                QStringLiteral("interval of %1: %2")
                    .arg(QLatin1String(kWheelMeasures[i].key), QString::fromStdString(result.intervalReasons[i])));
        }
    }
    return texts.join(QStringLiteral("; "));
}

} // namespace

QString wheelTable(const KxInspect::WheelResults& results) {
    const QStringList names = kxreport::wheelNames(results);
    QString text;
    for (std::size_t i = 0; i < results.wheels.size(); ++i) {
        const WheelResult& result = results.wheels[i];
        if (!result.error.empty()) { // reported on stderr
            continue;
        }
        const QString verdict = QLatin1String(textOf(result.verdict));
        text += text.isEmpty() ? QString() : QStringLiteral("\n");
        text += printable(names[static_cast<qsizetype>(i)]) +
                (verdict.isEmpty() ? QString() : QStringLiteral(": ") + verdict) + QLatin1Char('\n');
        if (!result.isMeasured()) {
            text += QStringLiteral("  no flange or tread to measure: %1\n").arg(reasons(result));
            continue;
        }
        for (std::size_t k = 0; k < kWheelMeasures.size(); ++k) {
            text += line(result, k, results.limits);
        }
    }
    if (results.gaugeError.isSet() && !text.isEmpty()) {
        text += QStringLiteral("\nThe intervals contain %1.\n").arg(kxreport::causesText(results.gaugeError));
    }
    const QString judged = kxreport::judgementText(results);
    return text + (judged.isEmpty() ? QString() : QLatin1Char('\n') + judged + QStringLiteral(".\n"));
}

QString wheelCsv(const KxInspect::WheelResults& results) {
    QStringList titles(QStringLiteral("file"));
    for (const WheelMeasure& measure : kWheelMeasures) {
        for (const char* const end : {"", "Low", "High"}) {
            titles.append(QLatin1String(measure.key) + QLatin1String(end));
        }
    }
    QString text = csvLine(titles + kxreport::textList({QStringLiteral("verdict"), QStringLiteral("reason")}));
    for (const WheelResult& result : results.wheels) {
        QStringList fields(csvField(QString::fromStdString(result.file)));
        for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
            fields.append(shortestText(valueOf(result, kWheelMeasures[i])));
            fields.append(shortestText(result.intervals[i].low));
            fields.append(shortestText(result.intervals[i].high));
        }
        fields.append(QLatin1String(textOf(result.verdict)));
        fields.append(csvField(result.error.empty() ? reasons(result) : QString::fromStdString(result.error)));
        text += csvLine(fields);
    }
    return text;
}

} // namespace kxtool
