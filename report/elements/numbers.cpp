// Numbers as text for readers.
#include "report/elements/numbers.h"

#include <KxInspect/Json.h>

#include <cmath>

namespace kxreport {

QString shortestText(float value) {
    return QString::fromStdString(KxInspect::shortestText(value));
}

QString fixedText(float value, int decimals) {
    return std::isfinite(value) ? QString::number(static_cast<double>(value), 'f', decimals) : QStringLiteral("-");
}

QString withInterval(float value, const KxInspect::Interval& interval, int decimals) {
    QString text = fixedText(value, decimals);
    if (!std::isfinite(value) || !interval.isKnown()) {
        return text;
    }
    const QString below = fixedText(value - interval.low, decimals);
    if (below == fixedText(interval.high - value, decimals)) {
        return QStringLiteral("%1 \u00b1 %2").arg(text, below);
    }
    return QStringLiteral("%1 (%2 to %3)")
        .arg(text, fixedText(interval.low, decimals), fixedText(interval.high, decimals));
}

} // namespace kxreport
