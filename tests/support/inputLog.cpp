#include "support/inputLog.h"

#include "support/comparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace testing_support {

namespace {

std::string literal(bool value) {
    return value ? "true" : "false";
}

std::string literal(long long value) {
    return std::to_string(value);
}

/// The same float when compiled, the sign of 0 included.
std::string literal(float value) {
    if (std::isnan(value)) {
        return "kNaN";
    }
    if (std::isinf(value)) {
        return value > 0 ? "kInf" : "-kInf";
    }
    std::array<char, 32> digits;
    static_cast<void>(
        std::snprintf(digits.data(), digits.size(), "%.9g", static_cast<double>(value))); // at most 16 characters
    const std::string text = digits.data();
    const bool isInteger = text.find_first_of(".e") == std::string::npos;
    return isInteger && text != "-0" ? text : text + (isInteger ? ".0f" : "f");
}

std::string inBraces(std::initializer_list<std::string> fields) {
    std::string all;
    for (const std::string& field : fields) {
        all += (all.empty() ? "{" : ", ") + field;
    }
    return all + "}";
}

std::string literal(const KxMath::KxPointXY& p) {
    return inBraces({literal(p.x), literal(p.y)});
}

std::string literal(const KxMath::KxPointXYZ& p) {
    return inBraces({literal(p.x), literal(p.y), literal(p.z)});
}

std::string literal(const KxMath::KxPointXYZRGB& p) {
    return inBraces({literal(p.x), literal(p.y), literal(p.z), std::to_string(p.rgb) + "u"});
}

/// A list in braces, without its last elements where it grows too long.
template <typename List, typename Literal>
std::string braced(const List& list, std::size_t maxLength, Literal literalOf) {
    std::string all = "{";
    std::size_t written = 0;
    for (const auto& element : list) {
        if (all.size() >= maxLength) {
            return all + "} // and " + std::to_string(static_cast<std::size_t>(list.size()) - written) + " more";
        }
        all += (written++ > 0 ? ", " : "") + literalOf(element);
    }
    return all + "}";
}

std::string escaped(const QByteArray& bytes, std::size_t maxLength) {
    std::string all = "QByteArray::fromPercentEncoding(\"";
    const auto shown = std::min(bytes.size(), static_cast<qsizetype>(maxLength / 3));
    all += bytes.first(shown).toPercentEncoding(";,+ ").toStdString() + "\")";
    return shown == bytes.size() ? all : all + " // and " + std::to_string(bytes.size() - shown) + " bytes more";
}

/// Writes an entry of the log.
struct Printer {
    int difference;
    std::size_t maxLength;
    std::string all;

    template <typename Numbers>
    void operator()(const Numbers& numbers) {
        const auto literalOf = [](const auto& number) {
            return std::visit([](auto value) { return literal(value); }, number);
        };
        all += "  numbers: " + braced(numbers, maxLength, literalOf) + '\n';
    }
    void operator()(const QByteArray& bytes) { all += "  bytes: " + escaped(bytes, maxLength) + '\n'; }
    void operator()(const QList<KxMath::KxPointXY>& points) { print("Points", points); }
    void operator()(const QList<KxMath::KxPointXYZ>& points) { print("SpacePoints", points); }
    void operator()(const QList<KxMath::KxPointXYZRGB>& points) { print("QList<KxPointXYZRGB>", points); }

    template <typename Point>
    void print(const char* type, const QList<Point>& points) {
        const auto literalOf = [](const Point& p) { return literal(p); };
        const auto count = static_cast<int>(points.size());
        all += "  " + std::to_string(count) + " points";
        if (difference >= 0 && difference < count) {
            const int from = std::max(0, difference - kShownBeside);
            const int to = std::min(count, difference + kShownBeside + 1);
            all += ", from " + std::to_string(from) + ": " + braced(points.mid(from, to - from), maxLength, literalOf);
        }
        all += "\n  " + (type + braced(points, maxLength, literalOf)) + '\n';
    }
};

} // namespace

void InputLog::addNumber(Number number) {
    if (entries_.empty() || !std::holds_alternative<Numbers>(entries_.back())) {
        entries_.push_back(Numbers());
    }
    std::get<Numbers>(entries_.back()).push_back(number);
}

std::string InputLog::text(int difference, std::size_t maxLength) const {
    Printer printer{difference, maxLength, {}};
    for (const Entry& entry : entries_) {
        std::visit(printer, entry);
    }
    return printer.all;
}

RoundReport::RoundReport(unsigned seed, int round, const InputLog& input)
    : seed_(seed), round_(round), input_(input), hadFailure_(testing::Test::HasFailure()) {
    forgetDifference();
}

RoundReport::~RoundReport() {
    if (testing::Test::HasFailure() && !hadFailure_) {
        ADD_FAILURE() << "Seed " << seed_ << ", round " << round_ << ", input in the order in which it was drawn:\n"
                      << input_.text(firstDifference());
    }
}

} // namespace testing_support
