// Tables of points with named columns.
#include "inspect/formats/pointTable.h"

#include <KxMath/KxPoints.h>

#include <QtCore/QtEndian>

#include <bit>
#include <cmath>

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
        }
    }

    KxPointXYZRGB point;

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

void readBinary(const FileHeader& header, const std::vector<Column>& columns, qint64 count, PointSet& result) {
    const qint64 size = header.content().size() - header.end();
    qint64 rowSize = 0;
    for (const Column& column : columns) {
        rowSize += column.size;
    }
    if (rowSize == 0 || size / rowSize < count) {
        failShort(header, rowSize == 0 ? 0 : size / rowSize, count);
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

void readAscii(const FileHeader& header, const std::vector<Column>& columns, qint64 count, PointSet& result) {
    const QByteArray& data = header.content();
    qsizetype begin = header.end();
    for (qint64 i = 0; i < count; ++i) {
        if (begin >= data.size()) {
            failShort(header, i, count);
        }
        qsizetype end = data.indexOf('\n', begin);
        end = end < 0 ? data.size() : end;
        const QList<QByteArray> fields = data.mid(begin, end - begin).simplified().split(' ');
        if (fields.size() < static_cast<qsizetype>(columns.size())) {
            const qint64 line = header.lines() + i + 1;
            fail(ErrorKind::Damaged, header.source(),
                 QStringLiteral("has too few columns in point %1, in line %2").arg(i + 1).arg(line),
                 {begin, {}, line, {}});
        }
        begin = end + 1;
        Row row;
        for (size_t k = 0; k < columns.size(); ++k) {
            const QByteArray& field = fields[static_cast<qsizetype>(k)];
            const double value = field.toDouble();
            const bool isPackedFloat = columns[k].type == 'F' && columns[k].name == "rgb";
            const quint32 bits = isPackedFloat ? std::bit_cast<quint32>(static_cast<float>(value)) : field.toUInt();
            row.set(columns[k].name, value, bits);
        }
        append(row, result);
    }
}

} // namespace

PointSet readTable(const FileHeader& header, const std::vector<Column>& columns, qint64 count, TableData kind) {
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
        readAscii(header, columns, count, result);
    } else {
        readBinary(header, columns, count, result);
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
