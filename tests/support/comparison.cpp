#include "support/comparison.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>

namespace testing_support {

namespace {

int gFirstDifference = -1;

std::string formatted(const char* format, double value) {
    std::array<char, 64> text;
    static_cast<void>(std::snprintf(text.data(), text.size(), format, value)); // at most 25 characters
    return text.data();
}

/// As few digits as tell floats, or doubles where they are, from each other.
std::string decimal(Exact number) {
    const bool isFloat = std::isnan(number.value) || exact(static_cast<float>(number.value)) == number;
    return formatted(isFloat ? "%.9g" : "%.17g", number.value);
}

std::string hexadecimal(Exact number) {
    return formatted("%a", number.value) + " (" + decimal(number) + ")";
}

/// One of the two lists, element by element.
struct Side {
    const char* text;
    const ExactList& list;
    const ElementKind& kind;

    int count() const { return static_cast<int>(list.numbers.size()) / kind.fieldCount; }
    Exact field(int index, int f) const {
        return list.numbers[static_cast<std::size_t>(index) * static_cast<std::size_t>(kind.fieldCount) +
                            static_cast<std::size_t>(f)];
    }

    std::string element(int index) const {
        if (index >= count()) {
            return "-";
        }
        std::string all;
        for (int f = 0; f < kind.fieldCount; ++f) {
            all += (f > 0 ? ", " : "") + decimal(field(index, f));
        }
        return kind.fieldCount > 1 ? "(" + all + ")" : all;
    }
};

bool areSame(const Side& a, const Side& b, int index) {
    bool isSame = index < a.count() && index < b.count();
    for (int f = 0; isSame && f < a.kind.fieldCount; ++f) {
        isSame = a.field(index, f) == b.field(index, f);
    }
    return isSame;
}

/// Count and hexadecimal values of one list at the first difference; of points the fields that differ.
std::string described(const Side& side, const Side& other, int index) {
    std::string line = std::to_string(side.count()) + ' ' + side.kind.name + (side.count() == 1 ? "" : "s");
    if (index >= side.count()) {
        return line + ", none at " + std::to_string(index);
    }
    for (int f = 0; f < side.kind.fieldCount; ++f) {
        if (index >= other.count() || !(side.field(index, f) == other.field(index, f))) {
            line += std::string(", ") + side.kind.fieldNames[static_cast<std::size_t>(f)] + " = " +
                    hexadecimal(side.field(index, f));
        }
    }
    return line;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Exact& number) {
    return stream << hexadecimal(number);
}

int firstDifference() {
    return gFirstDifference;
}

void forgetDifference() {
    gFirstDifference = -1;
}

testing::AssertionResult compareExactly(const char* actualText, const char* expectedText, const Exact& actual,
                                        const Exact& expected) {
    if (actual == expected) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "Numbers that differ:\n  " << actualText << " = " << actual << "\n  "
                                       << expectedText << " = " << expected;
}

testing::AssertionResult compareExactly(const char* actualText, const char* expectedText, const ExactList& actual,
                                        const ExactList& expected) {
    if (actual == expected) {
        return testing::AssertionSuccess();
    }
    const ElementKind& kind = actual.kind == expected.kind || expected.numbers.empty() ? *actual.kind
                              : actual.numbers.empty()                                 ? *expected.kind
                                                                                       : kNumbers;
    const Side a{actualText, actual, kind}, b{expectedText, expected, kind};
    const int longer = std::max(a.count(), b.count());
    int first = 0, differing = 0;
    for (int i = longer - 1; i >= 0; --i) {
        if (!areSame(a, b, i)) {
            first = i;
            ++differing;
        }
    }
    gFirstDifference = gFirstDifference < 0 ? first : gFirstDifference;

    testing::AssertionResult result = testing::AssertionFailure();
    result << "Lists that differ, first at " << kind.name << ' ' << first << ", at " << differing << " of " << longer
           << ":\n  " << a.text << ": " << described(a, b, first) << "\n  " << b.text << ": " << described(b, a, first);
    const int from = std::max(0, first - kShownBeside), to = std::min(longer, first + kShownBeside + 1);
    const std::string head = "    " + std::string(kind.name) + "  ";
    std::size_t width = std::string(a.text).size();
    for (int i = from; i < to; ++i) {
        width = std::max(width, a.element(i).size());
    }
    const auto padded = [](std::string text, std::size_t size) {
        return text.resize(std::max(size, text.size()), ' '), text;
    };
    result << '\n' << head << padded(a.text, width) << "  " << b.text;
    for (int i = from; i < to; ++i) {
        const std::string index = std::to_string(i);
        result << "\n  " << (areSame(a, b, i) ? ' ' : '*')
               << std::string(head.size() - 5 - std::min(head.size() - 5, index.size()), ' ') << index << "  "
               << padded(a.element(i), width) << "  " << b.element(i);
    }
    return result;
}

} // namespace testing_support
