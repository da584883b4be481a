// Texts that are tables of points.
#include "inspect/formats/textTable.h"

#include "inspect/formats/textFields.h"

#include <array>
#include <cmath>
#include <limits>
#include <tuple>

namespace KxInspect::detail {

namespace {

constexpr std::array kSeparators = {';', ',', '\t', ' '}; // of readings with the same points, the first is named

/// What keeps a text from being read in one way.
struct Failure {
    std::int64_t line = 0; ///< 0: there is no line with numbers
    int column = 0; ///< from 1; up to there the line was understood
    ErrorPlace place;
    ErrorKind kind = ErrorKind::Damaged;
    QString reason;
};

enum class Outcome { Empty, Title, Row, Failed };

/// One way to read the text, and how far it got.
struct Reading {
    char separator = ' ';
    char decimalSign = 0; ///< 0: not known yet
    bool isDecimalGiven = false;
    int columns = 0; ///< 0: not known yet
    std::int64_t titles = 0;
    std::int64_t rows = 0;
    std::int64_t emptyLine = 0; ///< the first one behind the points
    std::int64_t differs = 0; ///< the first line that another reading understands in another way
    bool isSeen = false; ///< whether the separator stands in the text; only known in the end
    std::array<float, 3> point{};
    std::optional<Failure> failure;

    void restart() {
        decimalSign = isDecimalGiven ? decimalSign : char(0);
        columns = 0;
        titles = rows = emptyLine = differs = 0;
    }
};

/// Whether the first word of a line is one, and no sign or number.
bool beginsWithWord(std::string_view line) {
    const std::size_t first = line.find_first_not_of("; ,\t");
    if (first == std::string_view::npos) {
        return false;
    }
    const std::string_view word = line.substr(first, line.find_first_of("; ,\t", first) - first);
    if (word == "-") {
        return beginsWithWord(line.substr(first + 1));
    }
    char decimalSign = '.';
    float value = 0.0f;
    constexpr std::string_view kOfNumbers = "0123456789+-.";
    return kOfNumbers.find(word.front()) == std::string_view::npos &&
           parseFloat(word, decimalSign, value) == FieldKind::Text;
}

/// Whether a line before the first point is a title: a comment, or words without a number in a field of its own.
bool isTitle(std::string_view line, const Reading& reading) {
    const std::string_view text = trimmed(line);
    if (text.front() == '#' || text.front() == '%' || text.substr(0, 2) == "//") {
        return true;
    }
    if (!beginsWithWord(text)) {
        return false;
    }
    Fields fields(line, reading.separator);
    while (const std::optional<std::string_view> field = fields.next()) {
        char decimalSign = reading.decimalSign;
        float value = 0.0f;
        if (parseFloat(*field, decimalSign, value) == FieldKind::Number) {
            return false;
        }
    }
    return true;
}

bool areSame(const Reading& a, const Reading& b) {
    const auto isSame = [](float x, float y) { return x == y || (std::isnan(x) && std::isnan(y)); };
    return a.columns == b.columns && std::equal(a.point.begin(), a.point.end(), b.point.begin(), isSame);
}

class TableReader {
public:
    TableReader(TextLines& lines, const TextOptions& options, TextUse use, PointSink& sink)
        : lines_(lines), columns_(options.columns), use_(use), sink_(sink), most_(lines.countLineEnds() + 1) {
        for (const char separator : kSeparators) {
            const bool isComma = separator == ',';
            if (options.separator.value_or(separator) == separator && !(isComma && options.decimalSign == ',')) {
                Reading reading;
                reading.separator = separator;
                reading.decimalSign = isComma ? '.' : options.decimalSign.value_or(char(0));
                reading.isDecimalGiven = reading.decimalSign != 0;
                readings_.push_back(reading);
            }
        }
    }

    TextForm read() {
        for (;;) { // each time with a reading less
            Reading* const leader = firstLeft();
            if (leader == nullptr) {
                failAll();
            }
            if (readWith(*leader)) {
                checkUnique(*leader);
                const char decimalSign = leader->decimalSign == 0 ? '.' : leader->decimalSign;
                return {leader->separator, decimalSign, leader->titles, leader->columns, 0};
            }
        }
    }

private:
    Reading* firstLeft() {
        const auto left = std::find_if(readings_.begin(), readings_.end(), [](auto& r) { return !r.failure; });
        return left == readings_.end() ? nullptr : &*left;
    }

    /// Reads all lines, those that can still be read in another way in that way, too.
    /// @return false when this is none
    bool readWith(Reading& leader) {
        lines_.rewind();
        std::for_each(readings_.begin(), readings_.end(), [](Reading& r) { r.restart(); });
        while (const std::optional<std::string_view> line = lines_.next()) {
            const Outcome outcome = take(leader, *line);
            if (outcome == Outcome::Failed) {
                return false;
            }
            for (Reading& other : readings_) {
                if (&other != &leader && !other.failure) {
                    compare(leader, outcome, other, *line);
                }
            }
            if (outcome == Outcome::Row) {
                addPoint(leader);
            }
        }
        if (leader.rows == 0) {
            leader.failure = Failure{0, 0, {}, ErrorKind::Unsuitable, QStringLiteral("holds no points")};
        }
        return leader.rows > 0;
    }

    void compare(const Reading& leader, Outcome outcome, Reading& other, std::string_view line) {
        const Outcome otherOutcome = take(other, line);
        const bool isSame = outcome == otherOutcome && (outcome != Outcome::Row || areSame(leader, other));
        if (!isSame && other.differs == 0) {
            other.differs = lines_.line();
        }
    }

    bool hasZ(const Reading& reading) const {
        return use_ == TextUse::Points && (columns_.empty() ? reading.columns > 2 : columns_.size() > 2);
    }

    void addPoint(const Reading& leader) {
        if (leader.rows == 1) {
            sink_.begin(most_ - leader.titles, hasZ(leader));
        }
        sink_.add(leader.point[0], leader.point[1], leader.point[2]);
    }

    Outcome take(Reading& reading, std::string_view line) {
        if (trimmed(line).empty()) {
            if (reading.rows == 0) {
                ++reading.titles;
            } else if (reading.emptyLine == 0) {
                reading.emptyLine = lines_.line();
            }
            return Outcome::Empty;
        }
        if (reading.rows == 0 && isTitle(line, reading)) {
            ++reading.titles;
            return Outcome::Title;
        }
        if (reading.emptyLine != 0) {
            return failAt(reading, 1, line, QStringLiteral("goes on behind the empty line %1").arg(reading.emptyLine));
        }
        const Outcome outcome = takeRow(reading, line);
        reading.rows += outcome == Outcome::Row ? 1 : 0;
        return outcome;
    }

    Outcome takeRow(Reading& reading, std::string_view line) {
        reading.point.fill(std::numeric_limits<float>::quiet_NaN());
        Fields fields(line, reading.separator);
        int count = 0;
        for (std::optional<std::string_view> field = fields.next(); field; field = fields.next()) {
            ++count;
            float value = 0.0f;
            if (parseFloat(*field, reading.decimalSign, value) == FieldKind::Text) {
                return failAt(reading, count, *field, QStringLiteral("has no number"));
            }
            if (reading.columns > 0 && count > reading.columns) {
                return failAt(reading, count, *field, QStringLiteral("has more than %1 columns").arg(reading.columns));
            }
            setCoordinate(reading, count - 1, value);
        }
        return checkCount(reading, count, line);
    }

    void setCoordinate(Reading& reading, int column, float value) const {
        if (columns_.empty()) {
            if (column < (use_ == TextUse::Points ? 3 : 2)) {
                reading.point[static_cast<std::size_t>(column)] = value;
            }
            return;
        }
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            if (columns_[i] == column) {
                reading.point[i] = value;
            }
        }
    }

    Outcome checkCount(Reading& reading, int count, std::string_view line) {
        if (reading.columns == 0) {
            if (columns_.empty() && count != 2 && (use_ == TextUse::Profile || (count != 3 && count != 6))) {
                return failAt(reading, count, line,
                              QStringLiteral("has %1 columns, not %2 (--columns selects others),")
                                  .arg(count)
                                  .arg(use_ == TextUse::Profile ? QLatin1String("2") : QLatin1String("2, 3 or 6")),
                              ErrorKind::Unsuitable);
            }
            const int needed = columns_.empty() ? 0 : *std::max_element(columns_.begin(), columns_.end()) + 1;
            if (count < needed) {
                return failAt(reading, count, line, QStringLiteral("has no column %1").arg(needed),
                              ErrorKind::Unsuitable);
            }
            reading.columns = count;
        } else if (count < reading.columns) {
            return failAt(reading, count, line,
                          QStringLiteral("has only %1 of %2 columns").arg(count).arg(reading.columns));
        }
        return Outcome::Row;
    }

    Outcome failAt(Reading& reading, int column, std::string_view text, const QString& what,
                   ErrorKind kind = ErrorKind::Damaged) {
        ErrorPlace place = lines_.place();
        place.column = column;
        const QString reason = QStringLiteral("%1 in line %2, column %3: '%4'")
                                   .arg(what, QString::number(lines_.line()), QString::number(column),
                                        QString::fromStdString(excerpt(text)));
        reading.failure = Failure{lines_.line(), column, place, kind, reason};
        return Outcome::Failed;
    }

    /// Gives up with the reading that got furthest, and names another one that the text has the separator of.
    [[noreturn]] void failAll() {
        findSeparators();
        const auto isLess = [](const Reading& a, const Reading& b) {
            return std::tuple(a.isSeen, a.failure->line, a.failure->column) <
                   std::tuple(b.isSeen, b.failure->line, b.failure->column);
        };
        const Reading& best = *std::max_element(readings_.begin(), readings_.end(), isLess);
        const Failure& failure = *best.failure;
        QString reason = failure.reason;
        if (best.isSeen && failure.line > 0) {
            reason += QStringLiteral(", read with %1 between the columns").arg(separatorName(best.separator));
        }
        for (const Reading& other : readings_) {
            const bool isWorthIt = other.failure->line > 0 && other.isSeen && // blanks stand in other texts, too
                                   (other.separator != ' ' || other.failure->column > 1);
            if (&other != &best && isWorthIt && isLess(other, best)) {
                reason += QStringLiteral("; with %1 it %2").arg(separatorName(other.separator), other.failure->reason);
                break;
            }
        }
        fail(failure.kind, lines_.source(), reason, failure.place);
    }

    /// Finds out which separators stand in the lines that were read.
    void findSeparators() {
        std::int64_t last = 0;
        for (const Reading& reading : readings_) {
            last = std::max(last, reading.failure->line);
        }
        lines_.rewind();
        while (lines_.line() < last) {
            const std::optional<std::string_view> line = lines_.next();
            for (Reading& reading : readings_) {
                const std::string_view text = trimmed(line.value_or(std::string_view()));
                reading.isSeen |= text.find(reading.separator) != std::string_view::npos;
            }
        }
    }

    void checkUnique(const Reading& leader) const {
        for (const Reading& other : readings_) {
            if (&other != &leader && !other.failure && other.rows > 0 && other.differs > 0) {
                const auto name = [](const Reading& r) {
                    return QStringLiteral("%1 columns between %2").arg(r.columns).arg(separatorName(r.separator));
                };
                fail(ErrorKind::Unsuitable, lines_.source(),
                     QStringLiteral("can be read in two ways that differ in line %1, as %2 and as %3; choose one by "
                                    "--separator")
                         .arg(QString::number(other.differs), name(leader), name(other)),
                     {{}, {}, other.differs, {}});
            }
        }
    }

    TextLines& lines_;
    const std::vector<int>& columns_;
    TextUse use_;
    PointSink& sink_;
    std::int64_t most_;
    std::vector<Reading> readings_;
};

} // namespace

QString separatorName(char separator) {
    switch (separator) {
    case ' ':
        return QStringLiteral("blanks");
    case '\t':
        return QStringLiteral("tabs");
    default:
        return QStringLiteral("'%1'").arg(QLatin1Char(separator));
    }
}

void checkTextOptions(const TextOptions& options, TextUse use) {
    const auto refuse = [](const char* key, const QString& reason) {
        fail(ErrorKind::BadArgument, {{}, {}, key}, reason);
    };
    const std::vector<int>& columns = options.columns;
    const bool isCount = columns.empty() || columns.size() == 2 || (columns.size() == 3 && use == TextUse::Points);
    if (!isCount) {
        refuse("columns", use == TextUse::Profile ? QStringLiteral("columns need an x and a y")
                                                  : QStringLiteral("columns need an x, a y and perhaps a z"));
    }
    if (std::any_of(columns.begin(), columns.end(), [](int column) { return column < 0; })) {
        refuse("columns", QStringLiteral("columns are counted from 0"));
    }
    const auto isSeparator = [&](char c) { return c == options.separator; };
    if (options.separator && std::none_of(kSeparators.begin(), kSeparators.end(), isSeparator)) {
        refuse("separator", QStringLiteral("separator is one of ; , tab and blank"));
    }
    if (options.decimalSign && options.decimalSign != '.' && options.decimalSign != ',') {
        refuse("decimalSign", QStringLiteral("decimalSign is . or ,"));
    }
    if (options.separator == ',' && options.decimalSign == ',') {
        refuse("decimalSign", QStringLiteral("decimalSign and separator are both a comma"));
    }
}

TextForm readTextTable(TextLines& lines, const TextOptions& options, TextUse use, PointSink& sink) {
    return TableReader(lines, options, use, sink).read();
}

} // namespace KxInspect::detail
