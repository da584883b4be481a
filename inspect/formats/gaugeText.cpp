// Text files of contact profile gauges.
#include "inspect/formats/gaugeText.h"

#include "inspect/formats/textFields.h"

#include <cctype>
#include <charconv>
#include <limits>
#include <string>

namespace KxInspect::detail {

namespace {

constexpr int kMostHeaderRows = 3; ///< more lines of numbers in a row before an empty line are points

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
}

/// The name in "NAME=VALUE"; empty for other lines.
std::string_view nameOf(std::string_view line) {
    const std::size_t sign = line.find('=');
    const std::string_view name = trimmed(line.substr(0, std::min(sign, line.size())));
    const bool isName = sign != std::string_view::npos && !name.empty() &&
                        std::isalpha(static_cast<unsigned char>(name.front())) != 0 &&
                        std::all_of(name.begin(), name.end(), isNameCharacter);
    return isName ? name : std::string_view();
}

std::string_view valueOf(std::string_view line) {
    return trimmed(line.substr(line.find('=') + 1));
}

/// "Stock.......: 7"
bool isDottedName(std::string_view line) {
    const std::size_t dots = line.find("..:");
    return dots != std::string_view::npos && dots > 0 && std::isalpha(static_cast<unsigned char>(line.front())) != 0;
}

/// What the header says about the points.
struct GaugeHeader {
    std::int64_t lines = 0; ///< before the first point
    bool isBlock = false; ///< the points end with "point.end"
    int columns = 0; ///< 0: as many as the first point has numbers
    int x = 0;
    int y = 1;
    int z = -1; ///< -1: there is none
    std::int64_t points = 0; ///< at least; 0: not known
};

/// "X,Y,A"
void readColumns(std::string_view value, GaugeHeader& header) {
    Fields fields(value, ',');
    int column = 0;
    for (std::optional<std::string_view> field = fields.next(); field && !value.empty(); field = fields.next()) {
        if (*field == "X") {
            header.x = column;
        } else if (*field == "Y") {
            header.y = column;
        }
        ++column;
    }
    header.columns = column;
}

void readEntry(std::string_view line, GaugeHeader& header) {
    const std::string_view value = valueOf(line);
    if (nameOf(line) == "ColumnDef") {
        readColumns(value, header);
    } else if (nameOf(line) == "XYPoints") {
        std::from_chars(value.data(), value.data() + value.size(), header.points);
    }
}

/// How many numbers a line begins with.
int leadingNumbers(std::string_view line, char separator) {
    Fields fields(line, separator);
    int count = 0;
    char decimalSign = 0;
    float value = 0.0f;
    while (const std::optional<std::string_view> field = fields.next()) {
        if (parseFloat(*field, decimalSign, value) == FieldKind::Text) {
            break;
        }
        ++count;
    }
    return count;
}

bool isRow(std::string_view line, char separator) {
    Fields fields(line, separator);
    int count = 0;
    while (fields.next()) {
        ++count;
    }
    return count > 1 && leadingNumbers(line, separator) == count;
}

class GaugeReader {
public:
    GaugeReader(TextLines& lines, const TextOptions& options, PointSink& sink)
        : lines_(lines), options_(options), sink_(sink), most_(lines.countLineEnds() + 1) {
        form_.separator = options.separator.value_or(' ');
        decimalSign_ = options.decimalSign.value_or(char(0));
    }

    TextForm read() {
        findPoints();
        lines_.rewind();
        while (lines_.line() < header_.lines) {
            lines_.next();
        }
        form_.titleLines = header_.lines;
        readPoints();
        form_.decimalSign = decimalSign_ == 0 ? '.' : decimalSign_;
        return form_;
    }

private:
    void findPoints() {
        std::optional<std::string_view> line = lines_.next();
        while (line && trimmed(*line).empty()) {
            line = lines_.next();
        }
        if (!line) {
            failNoPoints();
        }
        const std::string_view first = trimmed(*line);
        if (first == "header.begin" || first == "spline.begin" || first == "point.begin") {
            findBlock(first);
        } else if (!nameOf(first).empty()) {
            readEntries(*line);
        } else {
            findEmptyLine(*line);
        }
    }

    void findBlock(std::string_view first) {
        std::optional<std::string_view> line = first;
        while (line && trimmed(*line) != "point.begin") {
            line = lines_.next();
        }
        if (!line) {
            failNoPoints();
        }
        header_.isBlock = true;
        header_.lines = lines_.line();
    }

    /// NAME=VALUE up to an empty line or the first one of another kind; a quotation mark begins a remark.
    void readEntries(std::string_view first) {
        std::optional<std::string_view> line = first;
        for (; line; line = lines_.next()) {
            const std::string_view text = trimmed(*line);
            if (text.empty()) {
                header_.lines = lines_.line();
                return;
            }
            if (text.front() != '"' && text.front() != '#' && nameOf(text).empty()) {
                header_.lines = lines_.line() - 1;
                return;
            }
            readEntry(text, header_);
        }
        failNoPoints();
    }

    /// The first empty line that something stands behind ends the header; without one the first point does.
    void findEmptyLine(std::string_view first) {
        std::int64_t emptyLine = 0;
        std::int64_t firstRow = 0;
        int rows = 0; // in a row
        std::optional<std::string_view> line = first;
        for (; line; line = lines_.next()) {
            if (trimmed(*line).empty()) {
                emptyLine = emptyLine == 0 ? lines_.line() : emptyLine;
                continue;
            }
            if (emptyLine != 0) {
                if (rows > kMostHeaderRows) {
                    failBehind(emptyLine, *line);
                }
                header_.lines = emptyLine;
                return;
            }
            const bool isPoint = isRow(*line, form_.separator) || (!options_.separator && isRow(*line, ';'));
            rows = isPoint ? rows + 1 : 0;
            firstRow = isPoint && firstRow == 0 ? lines_.line() : firstRow;
        }
        if (firstRow == 0) {
            failNoPoints();
        }
        header_.lines = firstRow - 1;
    }

    void readPoints() {
        std::int64_t emptyLine = 0;
        std::int64_t count = 0;
        bool isEnded = false;
        while (const std::optional<std::string_view> line = lines_.next()) {
            const std::string_view text = trimmed(*line);
            if (header_.isBlock && text == "point.end") {
                isEnded = true;
                break;
            }
            if (text.empty()) {
                form_.titleLines += count == 0 ? 1 : 0;
                emptyLine = emptyLine == 0 && count > 0 ? lines_.line() : emptyLine;
            } else if (emptyLine != 0) {
                failBehind(emptyLine, text);
            } else {
                if (count == 0) {
                    begin(*line);
                }
                addPoint(*line);
                ++count;
            }
        }
        if (count == 0) {
            failNoPoints();
        }
        checkEnd(isEnded, count);
    }

    void checkEnd(bool isEnded, std::int64_t count) const {
        if (header_.isBlock && !isEnded) {
            fail(ErrorKind::Damaged, lines_.source(),
                 QStringLiteral("ends in line %1 without point.end").arg(lines_.line()), lines_.place());
        }
        if (count < header_.points) {
            fail(ErrorKind::Damaged, lines_.source(),
                 QStringLiteral("ends in line %1 after %2 of %3 points")
                     .arg(lines_.line())
                     .arg(count)
                     .arg(header_.points),
                 lines_.place());
        }
    }

    /// Takes the form of the first point.
    void begin(std::string_view line) {
        if (!options_.separator && leadingNumbers(line, ' ') == 0 && leadingNumbers(line, ';') > 1) {
            form_.separator = ';';
        }
        form_.columns = header_.columns > 0 ? header_.columns : std::max(2, leadingNumbers(line, form_.separator));
        if (!options_.columns.empty()) {
            header_.x = options_.columns[0];
            header_.y = options_.columns[1];
            header_.z = options_.columns.size() > 2 ? options_.columns[2] : -1;
        }
        const int last = std::max({header_.x, header_.y, header_.z});
        if (last >= form_.columns) {
            failAt(ErrorKind::Unsuitable, QStringLiteral("has no column %1").arg(last + 1), form_.columns, line);
        }
        sink_.begin(most_ - header_.lines, header_.z >= 0);
    }

    void addPoint(std::string_view line) {
        Fields fields(line, form_.separator);
        float x = 0.0f;
        float y = 0.0f;
        float z = std::numeric_limits<float>::quiet_NaN();
        for (int column = 0; column < form_.columns; ++column) {
            const std::optional<std::string_view> field = fields.next();
            if (!field) {
                failAt(ErrorKind::Damaged, QStringLiteral("has only %1 of %2 columns").arg(column).arg(form_.columns),
                       column, line);
            }
            float value = 0.0f;
            if (parseFloat(*field, decimalSign_, value) == FieldKind::Text) {
                failAt(ErrorKind::Damaged, QStringLiteral("has no number"), column + 1, *field);
            }
            x = column == header_.x ? value : x;
            y = column == header_.y ? value : y;
            z = column == header_.z ? value : z;
        }
        takeRemark(fields);
        sink_.add(x, y, z);
    }

    /// What stands behind the columns: a remark unless it begins with a number.
    void takeRemark(Fields& fields) {
        if (const std::optional<std::string_view> field = fields.next(); field && !field->empty()) {
            float value = 0.0f;
            char decimalSign = decimalSign_;
            if (parseFloat(*field, decimalSign, value) == FieldKind::Number) {
                failAt(ErrorKind::Damaged, QStringLiteral("has more than %1 columns").arg(form_.columns),
                       form_.columns + 1, *field);
            }
            ++form_.remarks;
        }
    }

    [[noreturn]] void failAt(ErrorKind kind, const QString& what, int column, std::string_view text) const {
        ErrorPlace place = lines_.place();
        place.column = column;
        fail(kind, lines_.source(),
             QStringLiteral("%1 in line %2, column %3: '%4'")
                 .arg(what, QString::number(lines_.line()), QString::number(column),
                      QString::fromStdString(excerpt(text))),
             place);
    }
    [[noreturn]] void failBehind(std::int64_t emptyLine, std::string_view text) const {
        failAt(ErrorKind::Damaged, QStringLiteral("goes on behind the empty line %1").arg(emptyLine), 1, text);
    }
    [[noreturn]] void failNoPoints() const {
        fail(ErrorKind::Unsuitable, lines_.source(), QStringLiteral("holds no points behind its header"));
    }

    TextLines& lines_;
    const TextOptions& options_;
    PointSink& sink_;
    std::int64_t most_;
    GaugeHeader header_;
    TextForm form_;
    char decimalSign_ = 0;
};

} // namespace

bool beginsGaugeHeader(std::string_view text) {
    bool isFirst = true;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = trimmed(text.substr(begin, end - begin));
        begin = end + 1;
        if (line.empty()) {
            if (!isFirst) {
                return false;
            }
            continue;
        }
        if (isDottedName(line) || (isFirst && (line == "header.begin" || line == "spline.begin" ||
                                               line == "point.begin" || !nameOf(line).empty()))) {
            return true;
        }
        isFirst = false;
    }
    return false;
}

TextForm readGaugeText(TextLines& lines, const TextOptions& options, PointSink& sink) {
    return GaugeReader(lines, options, sink).read();
}

} // namespace KxInspect::detail
