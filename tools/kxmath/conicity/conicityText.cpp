// The results of kxmath conicity as text.
#include "tools/kxmath/conicity/conicityText.h"

#include "tools/kxmath/console/numbers.h"

#include <limits>

namespace kxtool {

QString conicityTable(const KxInspect::ConicityResult& result) {
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    QString text = QStringLiteral("equivalent conicity at %1 mm: %2\n\namplitude, mm  conicity\n")
                       .arg(fixedText(result.shownAmplitude, 1), fixedText(result.shownConicity.value_or(kNone), 4));
    for (const KxInspect::Point& p : result.atWholeAmplitudes) {
        text += QStringLiteral("%1  %2\n").arg(fixedText(p.x, 0), 13).arg(fixedText(p.y, 4), 8);
    }
    return text;
}

QString conicityCsv(const KxInspect::ConicityResult& result) {
    QString text = QStringLiteral("amplitude;conicity\n");
    for (const KxInspect::Point& p : result.conicity) {
        text += shortestText(p.x) + QLatin1Char(';') + shortestText(p.y) + QLatin1Char('\n');
    }
    return text;
}

} // namespace kxtool
