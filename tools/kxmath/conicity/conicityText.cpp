// The results of kxmath conicity as text.
#include "tools/kxmath/conicity/conicityText.h"

#include "report/conicity/conicityReport.h"
#include "report/wheel/wheelWords.h"
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/numbers.h"

#include <limits>

namespace kxtool {

namespace {

using KxInspect::ConicityResult;

/// "smoothed over 1.5 to 7.7 mm" for each profile, and its noise.
QString smoothingLines(const ConicityResult& result) {
    QString text;
    for (const auto part : {KxInspect::Wheel1, KxInspect::Rail1, KxInspect::Wheel2, KxInspect::Rail2}) {
        const KxInspect::PlacedSection& section = result.sections[part];
        text += QStringLiteral("%1: noise %2 mm, %3\n")
                    .arg(QLatin1String(nameOf(part)), fixedText(section.noise.y, 3), kxreport::smoothingText(section));
    }
    return text;
}

} // namespace

QString conicityTable(const ConicityResult& result) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    QString text = QStringLiteral("equivalent conicity at %1 mm: %2")
                       .arg(fixedText(result.shownAmplitude, 1),
                            kxreport::conicityText(result.shownConicity, result.shownInterval));
    if (!result.shownConicity) {
        text +=
            QStringLiteral(" (%1)").arg(QString::fromStdString(reasonWithoutConicity(result, result.shownAmplitude)));
    }
    text += QLatin1Char('\n') + smoothingLines(result) +
            QStringLiteral("\namplitude, mm  conicity, 95 % interval  without smoothing\n");
    for (const KxInspect::ConicityRow& row : kxreport::reachedRows(result)) {
        text += QStringLiteral("%1  %2  %3")
                    .arg(kxreport::amplitudeText(row.amplitude), 13)
                    .arg(kxreport::conicityText(row.conicity, row.interval), -22)
                    .arg(fixedText(row.asMeasured.value_or(kNone), 4), 17);
        const QString reason = QString::fromStdString(reasonWithoutConicity(result, row.amplitude));
        text += reason.isEmpty() ? QStringLiteral("\n") : QStringLiteral("  (%1)\n").arg(reason);
    }
    if (result.gaugeError.isSet()) {
        text += QStringLiteral("\nThe intervals contain %1.\n").arg(kxreport::causesText(result.gaugeError));
    }
    return text;
}

QString conicityCsv(const ConicityResult& result) {
    QString text = csvLine(
        {QStringLiteral("amplitude"), QStringLiteral("conicity"), QStringLiteral("low"), QStringLiteral("high")});
    for (std::size_t i = 0; i < result.conicity.size(); ++i) {
        const KxInspect::Point& p = result.conicity[i];
        const KxInspect::Interval interval = i < result.intervals.size() ? result.intervals[i] : KxInspect::Interval();
        text += csvLine({shortestText(p.x), hasConicity(p) ? shortestText(p.y) : QString(), shortestText(interval.low),
                         shortestText(interval.high)});
    }
    return text;
}

} // namespace kxtool
