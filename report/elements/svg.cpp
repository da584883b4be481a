// Text for HTML and SVG.
#include "report/elements/svg.h"

#include <cmath>

namespace kxreport {

QString escaped(const QString& text) {
    QString result = text.toHtmlEscaped();
    for (QChar& c : result) {
        if (c.category() == QChar::Other_Control || c.isNonCharacter()) {
            c = QLatin1Char(' ');
        }
    }
    return result;
}

QString numberText(double value, int decimals) {
    if (!std::isfinite(value)) {
        return QStringLiteral("\u2013");
    }
    if (std::abs(value) >= 1e7) {
        return QString::number(value, 'g', 6);
    }
    const QString text = QString::number(value, 'f', decimals);
    const bool isMinusZero = text.startsWith(QLatin1Char('-')) && text.toDouble() == 0.0;
    return isMinusZero ? text.mid(1) : text;
}

QString coordinate(double value) {
    QString text = QString::number(value, 'f', 1);
    if (text.endsWith(QLatin1String(".0"))) {
        text.chop(2);
    }
    return text;
}

} // namespace kxreport
