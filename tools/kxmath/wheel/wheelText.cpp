// The results of kxmath wheel as text.
#include "tools/kxmath/wheel/wheelText.h"

#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/console/printable.h"

#include <QtCore/QFileInfo>

#include <limits>

namespace kxtool {

namespace {

using KxInspect::kWheelMeasures;
using KxInspect::WheelMeasure;
using KxInspect::WheelResult;

QString fileName(const WheelResult& result) {
    return printable(QFileInfo(QString::fromStdString(result.file)).fileName());
}

/// The measure, NaN when it was not found.
float valueOf(const WheelResult& result, const WheelMeasure& measure) {
    return (result.measures.*measure.value).value_or(std::numeric_limits<float>::quiet_NaN());
}

} // namespace

QString wheelTable(const KxInspect::WheelResults& results) {
    qsizetype nameWidth = 4;
    for (const WheelResult& result : results.wheels) {
        nameWidth = std::max(nameWidth, fileName(result).size());
    }
    QString text = QStringLiteral("file").leftJustified(nameWidth);
    for (const WheelMeasure& measure : kWheelMeasures) {
        text += QStringLiteral("  %1, mm").arg(QLatin1String(measure.key));
    }
    text += QStringLiteral("  verdict\n");
    for (const WheelResult& result : results.wheels) {
        if (!result.error.empty()) {
            continue; // reported on stderr
        }
        text += fileName(result).leftJustified(nameWidth);
        for (const WheelMeasure& measure : kWheelMeasures) {
            const auto width = static_cast<qsizetype>(qstrlen(measure.key) + qstrlen(", mm"));
            text += QStringLiteral("  ") + fixedText(valueOf(result, measure), 2).rightJustified(width);
        }
        const QString verdict = QLatin1String(textOf(result.verdict));
        text += QStringLiteral("  ") + (verdict.isEmpty() ? QStringLiteral("-") : verdict) + QLatin1Char('\n');
    }
    return text;
}

QString wheelCsv(const KxInspect::WheelResults& results) {
    QString text = QStringLiteral("file");
    for (const WheelMeasure& measure : kWheelMeasures) {
        text += QLatin1Char(';') + QLatin1String(measure.key);
    }
    text += QStringLiteral(";verdict\n");
    for (const WheelResult& result : results.wheels) {
        text += csvField(QString::fromStdString(result.file), QLatin1Char(';'));
        for (const WheelMeasure& measure : kWheelMeasures) {
            text += QLatin1Char(';') + shortestText(valueOf(result, measure));
        }
        text += QLatin1Char(';') + QLatin1String(textOf(result.verdict)) + QLatin1Char('\n');
    }
    return text;
}

} // namespace kxtool
