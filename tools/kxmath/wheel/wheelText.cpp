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

/// The header line of a table whose names are `width` wide.
QString header(qsizetype width) {
    QString text = QStringLiteral("file").leftJustified(width);
    for (const WheelMeasure& measure : kWheelMeasures) {
        text += QStringLiteral("  %1, mm").arg(QLatin1String(measure.key));
    }
    return text + QStringLiteral("  verdict\n");
}

QString line(const QString& name, const WheelResult& result) {
    QString text = name;
    for (const WheelMeasure& measure : kWheelMeasures) {
        const qsizetype width = static_cast<qsizetype>(qstrlen(measure.key)) + static_cast<qsizetype>(qstrlen(", mm"));
        text += QStringLiteral("  ") + fixedText(valueOf(result, measure), 2).rightJustified(width);
    }
    const QString verdict = QLatin1String(textOf(result.verdict));
    return text + QStringLiteral("  ") + (verdict.isEmpty() ? QStringLiteral("-") : verdict) + QLatin1Char('\n');
}

/// Why measures are missing, each reason once.
QString reasons(const WheelResult& result) {
    QStringList texts;
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        const QString reason = QString::fromStdString(result.reasons[i]);
        if (!reason.isEmpty() && !texts.contains(reason)) {
            texts.append(reason);
        }
    }
    return texts.join(QStringLiteral("; "));
}

} // namespace

QString wheelTable(const KxInspect::WheelResults& results) {
    const QStringList names = kxreport::wheelNames(results);
    qsizetype width = 4;
    for (const QString& name : names) {
        width = std::max(width, name.size());
    }
    QString text = header(width);
    for (std::size_t i = 0; i < results.wheels.size(); ++i) {
        if (results.wheels[i].error.empty()) { // others are reported on stderr
            const QString name = printable(names[static_cast<qsizetype>(i)]);
            text += line(name.leftJustified(width), results.wheels[i]);
        }
    }
    const QString judged = kxreport::judgementText(results);
    return text + (judged.isEmpty() ? QString() : QLatin1Char('\n') + judged + QStringLiteral(".\n"));
}

QString wheelCsv(const KxInspect::WheelResults& results) {
    QStringList titles(QStringLiteral("file"));
    for (const WheelMeasure& measure : kWheelMeasures) {
        titles.append(QLatin1String(measure.key));
    }
    QString text = csvLine(titles + kxreport::textList({QStringLiteral("verdict"), QStringLiteral("reason")}));
    for (const WheelResult& result : results.wheels) {
        QStringList fields(csvField(QString::fromStdString(result.file)));
        for (const WheelMeasure& measure : kWheelMeasures) {
            fields.append(shortestText(valueOf(result, measure)));
        }
        fields.append(QLatin1String(textOf(result.verdict)));
        fields.append(csvField(result.error.empty() ? reasons(result) : QString::fromStdString(result.error)));
        text += csvLine(fields);
    }
    return text;
}

} // namespace kxtool
