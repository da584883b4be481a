// Numbers in texts.
#include "inspect/formats/textNumber.h"

#include <QtCore/QString>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isWord(std::string_view text, std::string_view word) {
    return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

/// "nan" and "inf" in any case, without a sign.
FieldKind parseWord(std::string_view word, bool isNegative, double& value) {
    if (isWord(word, "nan")) {
        return FieldKind::Missing;
    }
    if (isWord(word, "inf") || isWord(word, "infinity")) {
        value = isNegative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
        return FieldKind::Number;
    }
    return FieldKind::Text;
}

/// Whether the magnitude of a number that a double cannot hold is below 1: it rounds to 0.
bool isTiny(std::string_view digits) {
    const std::size_t e = std::min(digits.find_first_of("eE"), digits.size());
    const std::string_view mantissa = digits.substr(0, e);
    std::string_view exponentText = digits.substr(std::min(e + 1, digits.size()));
    const bool isNegative = !exponentText.empty() && exponentText.front() == '-';
    exponentText.remove_prefix(!exponentText.empty() && (isNegative || exponentText.front() == '+') ? 1 : 0);
    long exponent = 0;
    const std::from_chars_result read =
        std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) {
        return isNegative;
    }
    const auto point = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<long>(std::min(mantissa.find_first_of("123456789"), mantissa.size()));
    return (isNegative ? -exponent : exponent) + point - first < 0;
}

/// A number with a decimal point.
FieldKind parsePoint(std::string_view text, double& value) {
    const bool isNegative = text.front() == '-';
    if (isNegative || text.front() == '+') {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return FieldKind::Text;
    }
    if (!isDigit(text.front()) && text.front() != '.') {
        return parseWord(text, isNegative, value);
    }
    double magnitude = 0.0;
    const std::from_chars_result read = std::from_chars(text.data(), text.data() + text.size(), magnitude);
    if (read.ptr != text.data() + text.size() || read.ec == std::errc::invalid_argument) {
        return FieldKind::Text;
    }
    if (read.ec == std::errc::result_out_of_range) {
        if (!isTiny(text)) {
            return FieldKind::Text;
        }
        magnitude = 0.0;
    }
    value = isNegative ? -magnitude : magnitude;
    return FieldKind::Number;
}

} // namespace

FieldKind parseDouble(std::string_view field, char& decimalSign, double& value) {
    value = std::numeric_limits<double>::quiet_NaN();
    if (field.empty() || field == "-") {
        return FieldKind::Missing;
    }
    if (field.size() > kLongestNumber) {
        return FieldKind::Text;
    }
    const std::size_t sign = field.find_first_of(".,");
    if (sign == std::string_view::npos) {
        return parsePoint(field, value);
    }
    const char found = field[sign];
    if (decimalSign != 0 && decimalSign != found) {
        return FieldKind::Text;
    }
    FieldKind kind = FieldKind::Text;
    if (found == '.') {
        kind = parsePoint(field, value);
    } else if (sign > 0 && isDigit(field[sign - 1]) && sign + 1 < field.size() && isDigit(field[sign + 1])) {
        std::array<char, kLongestNumber> text; // a comma stands between digits; elsewhere it separates
        std::copy(field.begin(), field.end(), text.begin());
        text[sign] = '.';
        kind = parsePoint({text.data(), field.size()}, value);
    }
    if (kind == FieldKind::Number) {
        decimalSign = found;
    }
    return kind;
}

FieldKind parseFloat(std::string_view field, char& decimalSign, float& value) {
    double exact = 0.0;
    FieldKind kind = parseDouble(field, decimalSign, exact);
    value = static_cast<float>(exact);
    if (std::isinf(value) && !std::isinf(exact)) {
        kind = FieldKind::Text;
    }
    return kind;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    while (!text.empty() && kBlanks.find(text.front()) != std::string_view::npos) {
        text.remove_prefix(1);
    }
    while (!text.empty() && kBlanks.find(text.back()) != std::string_view::npos) {
        text.remove_suffix(1);
    }
    return text;
}

std::string excerpt(std::string_view text) {
    constexpr std::size_t kLength = 40;
    text = trimmed(text);
    const bool isCut = text.size() > kLength;
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(text.size(), kLength)));
    std::replace_if(
        result.begin(), result.end(), [](QChar c) { return !c.isPrint(); }, QLatin1Char('?'));
    return result.toStdString() + (isCut ? "..." : "");
}

} // namespace KxInspect::detail
