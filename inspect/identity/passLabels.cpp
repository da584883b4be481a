// What the caller may say of a pass.
#include "inspect/identity/passLabels.h"

#include "inspect/base/error.h"
#include "inspect/base/utf8.h"

#include <QtCore/QDate>

#include <string_view>

namespace KxInspect {

namespace {

/// Takes fixed forms from the front of a text.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool isAtEnd() const { return rest_.empty(); }

    bool take(char expected) {
        const bool isThere = !rest_.empty() && rest_.front() == expected;
        rest_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    /// A number of exactly so many digits, -1 where there is none.
    int number(std::size_t digits) {
        int value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            if (i >= rest_.size() || rest_[i] < '0' || rest_[i] > '9') {
                return -1;
            }
            value = 10 * value + (rest_[i] - '0');
        }
        rest_.remove_prefix(digits);
        return value;
    }

private:
    std::string_view rest_;
};

bool isWithin(int value, int most) {
    return value >= 0 && value <= most;
}

constexpr int kLastHour = 23;
constexpr int kLastMinute = 59; // and second

bool takeDate(Scanner& text) {
    const int year = text.number(4);
    const int month = text.take('-') ? text.number(2) : -1;
    const int day = text.take('-') ? text.number(2) : -1;
    return year > 0 && QDate::isValid(year, month, day);
}

bool takeClock(Scanner& text) {
    constexpr int kMostFraction = 9;
    if (!isWithin(text.number(2), kLastHour) || !text.take(':') || !isWithin(text.number(2), kLastMinute)) {
        return false;
    }
    if (!text.take(':')) {
        return true;
    }
    if (!isWithin(text.number(2), kLastMinute)) {
        return false;
    }
    if (!text.take('.')) {
        return true;
    }
    int digits = 0;
    while (text.number(1) >= 0) {
        ++digits;
    }
    return digits >= 1 && digits <= kMostFraction;
}

bool takeZone(Scanner& text) {
    if (text.take('Z')) {
        return true;
    }
    return (text.take('+') || text.take('-')) && isWithin(text.number(2), kLastHour) && text.take(':') &&
           isWithin(text.number(2), kLastMinute);
}

} // namespace

std::string whyNoTime(const std::string& text) {
    Scanner scanner(text);
    if (!takeDate(scanner) || !scanner.take('T') || !takeClock(scanner)) {
        return "needs a date and a time as in 2026-03-29T01:59:07+01:00";
    }
    if (scanner.isAtEnd()) {
        return "needs a zone behind the time: Z, or an offset as +01:00";
    }
    return takeZone(scanner) && scanner.isAtEnd() ? "" : "needs Z or an offset as +01:00 behind the time";
}

std::string whyNoLabel(const std::string& text) {
    constexpr std::size_t kMost = 200;
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kDelete = 0x7f;
    if (text.empty()) {
        return "must not be empty";
    }
    if (!detail::isUtf8(text)) {
        return "must be UTF-8";
    }
    std::size_t characters = 0;
    for (std::size_t at = 0; at < text.size(); at += detail::utf8Length(text, at)) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte < kFirstPrintable || byte == kDelete) {
            return "must not hold control characters";
        }
        ++characters;
    }
    return characters <= kMost ? "" : "must not be longer than 200 characters";
}

void detail::checkLabels(const PassLabels& labels) {
    const auto check = [](const char* name, const std::string& why) {
        if (!why.empty()) {
            fail(ErrorKind::BadArgument, {{}, {}, name},
                 QStringLiteral("the %1 ").arg(QLatin1String(name)) + toQt(why));
        }
    };
    const std::pair<const char*, const std::optional<std::string>*> texts[] = {{"station", &labels.station},
                                                                               {"line", &labels.line},
                                                                               {"track", &labels.track},
                                                                               {"direction", &labels.direction}};
    for (const auto& [name, text] : texts) {
        check(name, *text ? whyNoLabel(**text) : std::string());
    }
    check("time", labels.time ? whyNoTime(*labels.time) : std::string());
    if (labels.speed && !(*labels.speed > 0.0f && *labels.speed <= kMostSpeed)) { // NaN: refused
        check("speed", "must be above 0 and no more than 1000 km/h");
    }
}

} // namespace KxInspect
