// Numbers as text for people and for programs.
#include "tools/kxmath/console/numbers.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kxtool {

QString shortestText(float value) {
    if (!std::isfinite(value)) {
        return {};
    }
    std::array<char, 64> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(end - text.data()));
}

QJsonValue jsonNumber(float value) {
    // By way of the text, so that 1360.1f is written as 1360.1 and not as 1360.0999755859375.
    return std::isfinite(value) ? QJsonValue(shortestText(value).toDouble()) : QJsonValue();
}

QString fixedText(float value, int decimals) {
    return std::isfinite(value) ? QString::number(static_cast<double>(value), 'f', decimals) : QStringLiteral("-");
}

} // namespace kxtool
