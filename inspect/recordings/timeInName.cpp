// Times in the names of files and folders.
#include "inspect/recordings/timeInName.h"

#include <KxInspect/PassIdentity.h>

#include <algorithm>

namespace KxInspect::detail {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Takes parts from the front of a name and writes them in the extended form.
class Rewriter {
public:
    explicit Rewriter(std::string_view name) : rest_(name) {}

    bool isNext(char c) const { return !rest_.empty() && rest_.front() == c; }
    bool isDigitNext() const { return !rest_.empty() && isDigit(rest_.front()); }

    bool take(char c) {
        const bool isThere = isNext(c);
        rest_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    /// The next digits, exactly so many.
    bool copyDigits(std::size_t count) {
        const std::string_view digits = rest_.substr(0, count);
        if (digits.size() < count || !std::all_of(digits.begin(), digits.end(), isDigit)) {
            return false;
        }
        text_ += digits;
        rest_.remove_prefix(count);
        return true;
    }

    void copyAllDigits() {
        while (copyDigits(1)) {
        }
    }

    void write(char c) { text_ += c; }
    bool isAtEnd() const { return rest_.empty(); }
    const std::string& text() const { return text_; }

private:
    std::string_view rest_;
    std::string text_;
};

bool rewriteDate(Rewriter& name) {
    if (!name.copyDigits(4)) {
        return false;
    }
    const bool isExtended = name.take('-');
    name.write('-');
    if (!name.copyDigits(2) || isExtended != name.take('-')) {
        return false;
    }
    name.write('-');
    return name.copyDigits(2);
}

/// Hours, minutes, and seconds where they are there; those behind '-' must be, as an offset could stand there.
bool rewriteClock(Rewriter& name) {
    if (!name.copyDigits(2)) {
        return false;
    }
    const char separator = name.isNext(':') ? ':' : name.isNext('-') ? '-' : '\0';
    if (separator != '\0') {
        name.take(separator);
    }
    name.write(':');
    if (!name.copyDigits(2)) {
        return false;
    }
    const bool hasSeconds = separator != '\0' ? name.take(separator) : name.isDigitNext();
    if (!hasSeconds) {
        return separator != '-';
    }
    name.write(':');
    if (!name.copyDigits(2)) {
        return false;
    }
    if (name.take('.')) {
        name.write('.');
        name.copyAllDigits();
    }
    return true;
}

bool rewriteZone(Rewriter& name) {
    if (name.take('Z')) {
        name.write('Z');
        return name.isAtEnd();
    }
    const char sign = name.isNext('-') ? '-' : '+';
    if (!name.take(sign)) {
        return false;
    }
    name.write(sign);
    if (!name.copyDigits(2)) {
        return false;
    }
    name.write(':');
    if (name.isAtEnd()) {
        name.write('0');
        name.write('0');
        return true;
    }
    name.take(':');
    return name.copyDigits(2) && name.isAtEnd();
}

} // namespace

std::optional<std::string> timeInName(std::string_view name) {
    Rewriter rewriter(name);
    if (!rewriteDate(rewriter) || !rewriter.take('T')) {
        return std::nullopt;
    }
    rewriter.write('T');
    if (!rewriteClock(rewriter) || !rewriteZone(rewriter) || !whyNoTime(rewriter.text()).empty()) {
        return std::nullopt;
    }
    return rewriter.text();
}

} // namespace KxInspect::detail
