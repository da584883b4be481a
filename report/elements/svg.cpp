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

double textWidth(const QString& text, double size) {
    constexpr double kNarrow = 0.4;
    constexpr double kUsual = 0.65;
    constexpr double kCapital = 0.79;
    constexpr double kWide = 1.0;
    double width = 0.0;
    for (const QChar c : text) {
        if (QStringLiteral("iljtfrI.,:;'|!()[] -").contains(c)) {
            width += kNarrow;
        } else if (QStringLiteral("mwMW%@").contains(c) || c.unicode() > 0x2fff) {
            width += kWide;
        } else {
            width += c.isUpper() || c.unicode() > 0x7f ? kCapital : kUsual;
        }
    }
    return width * size;
}

QString cutToWidth(const QString& text, double size, double pixels) {
    if (textWidth(text, size) <= pixels) {
        return text;
    }
    const QChar ellipsis(0x2026);
    QString part = text;
    while (!part.isEmpty() && textWidth(part + ellipsis, size) > pixels) {
        part.chop(1);
    }
    return part + ellipsis;
}

} // namespace kxreport
