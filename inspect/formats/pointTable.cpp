// Tables of points with named columns.
#include "inspect/formats/pointTable.h"

#include "inspect/formats/textFields.h"

#include <KxMath/KxPoints.h>

#include <QtCore/QtEndian>

#include <bit>
#include <charconv>
#include <cmath>
#include <string_view>

namespace KxInspect::detail {

namespace {

using KxMath::KxPointXYZRGB;

/// A row whose columns are set by name.
class Row {
public:
    void set(const QByteArray& name, double value, quint32 bits) {
        if (name == "x") {
            point.x = static_cast<float>(value);
        } else if (name == "y") {
            point.y = static_cast<float>(value);
        } else if (name == "z") {
            point.z = static_cast<float>(value);
        } else if (name == "red") {
            point.rgb |= channel(value) << 16;
        } else if (name == "green") {
            point.rgb |= channel(value) << 8;
        } else if (name == "blue") {
            point.rgb |= channel(value);
        } else if (name == "rgb") {
            point.rgb = bits;
        } else if (name == "profile") {
            profile = value;
        }
    }

    KxPointXYZRGB point;
    double profile = 0.0; ///< its number

private:
    static quint32 channel(double value) {
        return value >= 0.0 && value <= 255.0 ? static_cast<quint32>(value) : 0; // NaN: 0
    }
};

bool isColour(const Column& column) {
    return column.name == "rgb" || column.name == "red";
}

template <typename Unsigned>
quint64 bitsAt(const char* data) {
    return qFromLittleEndian<Unsigned>(data);
}

quint64 readBits(const char* data, int size) {
    switch (size) {
    case 1:
        return bitsAt<quint8>(data);
    case 2:
        return bitsAt<quint16>(data);
    case 4:
        return bitsAt<quint32>(data);
    default:
        return bitsAt<quint64>(data);
    }
}

double toNumber(quint64 bits, const Column& column) {
    if (column.type == 'F') {
        return column.size == 4 ? static_cast<double>(std::bit_cast<float>(static_cast<quint32>(bits)))
                                : std::bit_cast<double>(bits);
    }
    if (column.type == 'U') {
        return static_cast<double>(bits);
    }
    const int shift = 64 - 8 * column.size;
    return static_cast<double>(static_cast<qint64>(bits << shift) >> shift);
}

[[noreturn]] void failShort(const FileHeader& header, qint64 rows, qint64 count) {
    fail(ErrorKind::Damaged, header.source(), QStringLiteral("ends after %1 of %2 points").arg(rows).arg(count),
         {header.content().size(), {}, {}, {}});
}

void append(const Row& row, PointSet& result) {
    result.points.push_back({row.point.x, row.point.y, row.point.z});
    if (result.hasColours) {
        result.colours.push_back(row.point.rgb);
    }
}

void readBinary(const FileHeader& header, const std::vector<Column>& columns, const TableRows& rows, PointSet& result) {
    const qint64 count = rows.count;
    const qint64 size = header.content().size() - header.end();
    qint64 rowSize = 0;
    for (const Column& column : columns) {
        rowSize += column.size;
    }
    if (rowSize == 0 || size / rowSize < count) {
        failShort(header, rowSize == 0 ? 0 : size / rowSize, count);
    }
    if (rows.behind == 0 && size - rowSize * count >= rowSize) {
        const qint64 end = header.end() + rowSize * count;
        fail(ErrorKind::Damaged, header.source(),
             QStringLiteral("goes on behind its %1 points, at byte %2").arg(count).arg(end), {end, {}, {}, {}});
    }
    result.points.reserve(static_cast<std::size_t>(count));
    const char* at = header.content().constData() + header.end();
    for (qint64 i = 0; i < count; ++i) {
        Row row;
        for (const Column& column : columns) {
            const quint64 bits = readBits(at, column.size);
            row.set(column.name, toNumber(bits, column), static_cast<quint32>(bits));
            at += column.size;
        }
        append(row, result);
    }
}

/// Rows of text.
class AsciiRows {
public:
    AsciiRows(const FileHeader& header, const std::vector<Column>& columns, char separator)
        : header_(header), columns_(columns), separator_(separator),
          text_(header.content().constData(), static_cast<std::size_t>(header.content().size())),
          next_(static_cast<std::size_t>(header.end())), line_(header.lines()) {}

    bool isAtEnd() const { return next_ >= text_.size(); }

    std::string_view nextLine() {
        begin_ = next_;
        const std::size_t end = std::min(text_.find('\n', begin_), text_.size());
        next_ = end + 1;
        ++line_;
        return text_.substr(begin_, end - begin_);
    }

    Row readRow() {
        const std::string_view line = nextLine();
        Fields fields(line, separator_);
        Row row;
        int number = 0;
        for (const Column& column : columns_) {
            const std::optional<std::string_view> field = fields.next();
            if (!field) {
                failAt(QStringLiteral("has too few columns"), number, line);
            }
            ++number;
            set(row, column, number, *field);
        }
        if (const std::optional<std::string_view> surplus = fields.next()) {
            failAt(QStringLiteral("has more than %1 columns").arg(number), number + 1, *surplus);
        }
        return row;
    }

    /// Throws an Error when more lines follow than `most`.
    void checkEnd(qint64 most, qint64 count) {
        while (!isAtEnd()) {
            const std::string_view line = nextLine();
            if (!trimmed(line).empty() && --most < 0) {
                failAt(QStringLiteral("goes on behind its %1 points").arg(count), 1, line);
            }
        }
    }

    /// As many rows as the text can hold.
    std::size_t mostRows() const { return (text_.size() - std::min(next_, text_.size())) / (2 * columns_.size()) + 1; }

private:
    void set(Row& row, const Column& column, int number, std::string_view field) const {
        if (column.name == "rgb" && column.type != 'F') {
            quint32 bits = 0;
            const std::from_chars_result read = std::from_chars(field.data(), field.data() + field.size(), bits);
            if (read.ec != std::errc() || read.ptr != field.data() + field.size()) {
                failAt(QStringLiteral("has no colour"), number, field);
            }
            row.set(column.name, 0.0, bits);
            return;
        }
        char decimalSign = '.';
        double value = 0.0;
        if (parseDouble(field, decimalSign, value) == FieldKind::Text) {
            failAt(QStringLiteral("has no number"), number, field);
        }
        row.set(column.name, value, std::bit_cast<quint32>(static_cast<float>(value)));
    }

    [[noreturn]] void failAt(const QString& what, int column, std::string_view text) const {
        fail(ErrorKind::Damaged, header_.source(),
             QStringLiteral("%1 in line %2, column %3: '%4'")
                 .arg(what, QString::number(line_), QString::number(column), QString::fromStdString(excerpt(text))),
             {static_cast<std::int64_t>(begin_), {}, line_, column});
    }

    const FileHeader& header_;
    const std::vector<Column>& columns_;
    char separator_;
    std::string_view text_;
    std::size_t begin_ = 0;
    std::size_t next_;
    std::int64_t line_;
};

void readAscii(const FileHeader& header, const std::vector<Column>& columns, const TableRows& rows, PointSet& result) {
    AsciiRows text(header, columns, rows.separator);
    const bool hasProfiles =
        std::any_of(columns.begin(), columns.end(), [](const Column& c) { return c.name == "profile"; });
    double profile = 0.0;
    result.points.reserve(std::min(static_cast<std::size_t>(rows.count), text.mostRows()));
    for (qint64 i = 0; i < rows.count; ++i) {
        if (text.isAtEnd()) {
            failShort(header, i, rows.count);
        }
        const Row row = text.readRow();
        if (hasProfiles && (i == 0 || row.profile != profile)) {
            result.profileStarts.push_back(result.points.size());
            profile = row.profile;
        }
        append(row, result);
    }
    text.checkEnd(rows.behind, rows.count);
}

} // namespace

qint64 readCount(const FileHeader& header, const QByteArray& text) {
    bool isCount = false;
    const qint64 count = text.toLongLong(&isCount);
    if (!isCount || count < 0) {
        header.fail(ErrorKind::Damaged, QStringLiteral("has no count: '%1'")
                                            .arg(QString::fromStdString(
                                                excerpt({text.constData(), static_cast<std::size_t>(text.size())}))));
    }
    return count;
}

PointSet readTable(const FileHeader& header, const std::vector<Column>& columns, const TableRows& rows,
                   TableData kind) {
    PointSet result;
    bool hasX = false;
    bool hasY = false;
    for (const Column& column : columns) {
        hasX |= column.name == "x";
        hasY |= column.name == "y";
        result.hasZ |= column.name == "z";
        result.hasColours |= isColour(column);
    }
    if (!hasX || !hasY) {
        header.failWhole(ErrorKind::Unsuitable, QStringLiteral("has no columns x and y"));
    }
    if (kind == TableData::Ascii) {
        readAscii(header, columns, rows, result);
    } else {
        readBinary(header, columns, rows, result);
    }
    return result;
}

QByteArray coordinateText(float value) {
    return std::isnan(value) ? QByteArray("nan") : QByteArray::number(static_cast<double>(value), 'g', 9);
}

void appendFloat(QByteArray& bytes, float value) {
    char raw[sizeof(float)];
    qToLittleEndian(std::bit_cast<quint32>(value), raw);
    bytes.append(raw, sizeof(raw));
}

void appendPoint(QByteArray& bytes, const Point3& p, bool hasZ) {
    appendFloat(bytes, p.x);
    appendFloat(bytes, p.y);
    appendFloat(bytes, hasZ ? p.z : 0.0f);
}

} // namespace KxInspect::detail
