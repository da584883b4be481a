// Numbers as decimal text, with the results of Qt's conversions.
#include "io/decimalText.h"

#include <QtCore/QByteArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace KxMath::detail {

namespace {

constexpr int kDigits = 6;
constexpr std::uint64_t kSmallestWithDigits = 100000;
constexpr std::uint64_t kDigitsEnd = 1000000; // one more digit

/// A number as 0.DDDDDD times a power of ten.
struct Decimal {
    std::uint64_t digits; ///< the six
    int exponent; ///< of the first digit
};

/// 10^0 ... 10^12. 10^n is 5^n times a power of two, and 5^12 has 28 bits: times the 24 bits of a float the product is
/// an exact double.
constexpr std::array<double, 13> kPowersOfTen = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};

/// Rounds a number of 1e-7 up to below 1e6 to six digits, ties away from 0. No step but the last one rounds.
Decimal roundToDigits(float v) {
    const double value = static_cast<double>(v);
    int shift = kDigits; // at least as many as there are digits behind the point
    while (shift > 0 && value * kPowersOfTen[static_cast<std::size_t>(shift)] >= static_cast<double>(kDigitsEnd)) {
        --shift;
    }
    while (value * kPowersOfTen[static_cast<std::size_t>(shift)] < static_cast<double>(kSmallestWithDigits)) {
        ++shift;
    }
    const double scaled = value * kPowersOfTen[static_cast<std::size_t>(shift)];
    Decimal decimal{static_cast<std::uint64_t>(scaled), kDigits - 1 - shift};
    if (scaled - static_cast<double>(decimal.digits) >= 0.5) {
        ++decimal.digits;
    }
    if (decimal.digits == kDigitsEnd) {
        decimal = {kSmallestWithDigits, decimal.exponent + 1};
    }
    return decimal;
}

/// The form without exponent, for first digits down to 1e-4.
char* writeFixed(const Decimal& decimal, char* text) {
    std::array<char, kDigits> digits;
    std::uint64_t rest = decimal.digits;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, rest /= 10) {
        *digit = static_cast<char>('0' + rest % 10);
    }
    const char* end = digits.data() + kDigits;
    while (end[-1] == '0') {
        --end; // the first digit is never 0
    }
    const char* next = digits.data();
    if (decimal.exponent < 0) {
        *text++ = '0';
        *text++ = '.';
        text = std::fill_n(text, -1 - decimal.exponent, '0');
        return std::copy(next, end, text);
    }
    const char* const point = next + decimal.exponent + 1; // zeros before it are digits
    text = std::copy(next, point, text);
    if (end > point) {
        *text++ = '.';
        text = std::copy(point, end, text);
    }
    return text;
}

} // namespace

char* writeNumber(float v, char* text) {
    const float magnitude = std::abs(v);
    if (magnitude >= 1e-4f && magnitude < 999999.5f) { // NaN: false
        const Decimal decimal = roundToDigits(magnitude);
        if (std::signbit(v)) {
            *text++ = '-';
        }
        return writeFixed(decimal, text);
    }
    const QByteArray number = QByteArray::number(static_cast<double>(v), 'g', kDigits);
    return std::copy(number.cbegin(), number.cend(), text);
}

std::optional<double> parsePlainNumber(std::string_view text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const char* at = text.data();
    const char* const end = at + text.size();
    const bool isNegative = at != end && *at == '-';
    at += isNegative ? 1 : 0;
    if (at == end || !isDigit(*at) || !isDigit(end[-1])) {
        return {}; // "inf" and the like among them
    }
    constexpr std::ptrdiff_t kExactDigits =
        13; // digits and power of ten are exact doubles, so that the quotient is rounded once
    if (end - at <= kExactDigits) {
        std::int64_t digits = 0;
        std::size_t decimals = 0;
        const char* point = end;
        for (const char* c = at; c != end; ++c) {
            if (isDigit(*c)) {
                digits = digits * 10 + (*c - '0');
            } else if (*c == '.' && point == end) {
                point = c;
                decimals = static_cast<std::size_t>(end - c - 1);
            } else {
                digits = -1; // an exponent, or not a number
                break;
            }
        }
        if (digits >= 0) {
            const double value = static_cast<double>(digits) / kPowersOfTen[decimals];
            return isNegative ? -value : value;
        }
    }
    double value = 0.0;
    const std::from_chars_result result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional<double>(value) : std::nullopt;
}

} // namespace KxMath::detail
