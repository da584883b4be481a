// The results of kxmath conicity as text.
#include "tools/kxmath/conicity/conicityText.h"

#include "report/conicity/conicityReport.h"
#include "tools/kxmath/console/csv.h"
#include "tools/kxmath/console/numbers.h"

#include <limits>

namespace kxtool {

QString conicityTable(const KxInspect::ConicityResult& result) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    QString text = QStringLiteral("equivalent conicity at %1 mm: %2")
                       .arg(fixedText(result.shownAmplitude, 1), fixedText(result.shownConicity.value_or(kNone), 4));
    if (!result.shownConicity) {
        text +=
            QStringLiteral(" (%1)").arg(QString::fromStdString(reasonWithoutConicity(result, result.shownAmplitude)));
    }
    text += QStringLiteral("\n\namplitude, mm  conicity\n");
    for (const KxInspect::Point& p : kxreport::wholeAmplitudes(result)) {
        text += QStringLiteral("%1  %2\n").arg(fixedText(p.x, 0), 13).arg(fixedText(p.y, 4), 8);
    }
    return text;
}

QString conicityCsv(const KxInspect::ConicityResult& result) {
    QString text = csvLine({QStringLiteral("amplitude"), QStringLiteral("conicity")});
    for (const KxInspect::Point& p : result.conicity) {
        text += csvLine({shortestText(p.x), hasConicity(p) ? shortestText(p.y) : QString()});
    }
    return text;
}

} // namespace kxtool
