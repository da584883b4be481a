// The formats that point cloud viewers open.
#include "inspect/formats/viewerFormats.h"

#include "inspect/formats/pointTable.h"

#include <QtCore/QtEndian>

#include <bit>
#include <cmath>
#include <optional>

namespace kxtool {

namespace {

using KxMath::KxPointXYZRGB;

/// Takes the next line off a header. Nothing when the header does not end.
std::optional<QByteArray> takeLine(const QByteArray& content, qsizetype& at) {
    const qsizetype end = content.indexOf('\n', at);
    if (end < 0) {
        return {};
    }
    const QByteArray line = content.mid(at, end - at).trimmed();
    at = end + 1;
    return line;
}

Column plyColumn(const QByteArray& type, const QByteArray& name) {
    const struct {
        const char* names;
        char type;
        int size;
    } kTypes[] = {
        {" char int8 ", 'I', 1}, {" uchar uint8 ", 'U', 1}, {" short int16 ", 'I', 2},   {" ushort uint16 ", 'U', 2},
        {" int int32 ", 'I', 4}, {" uint uint32 ", 'U', 4}, {" float float32 ", 'F', 4}, {" double float64 ", 'F', 8},
    };
    for (const auto& t : kTypes) {
        if (QByteArray(t.names).contains(' ' + type + ' ')) {
            return {name, t.type, t.size};
        }
    }
    throw FormatError{QStringLiteral("has a column of the type '%1'").arg(QString::fromLatin1(type))};
}

void appendFloat(QByteArray& bytes, float value) {
    char raw[sizeof(float)];
    qToLittleEndian(std::bit_cast<quint32>(value), raw);
    bytes.append(raw, sizeof(raw));
}

void appendPoint(QByteArray& bytes, const KxPointXYZRGB& p, bool hasZ) {
    appendFloat(bytes, p.x);
    appendFloat(bytes, p.y);
    appendFloat(bytes, hasZ ? p.z : 0.0f);
}

} // namespace

PointData parseXyz(const QByteArray& content) {
    PointData data;
    for (QByteArray line : content.split('\n')) {
        line.replace(';', ' ').replace(',', ' ').replace('\t', ' ');
        const QList<QByteArray> fields = line.simplified().split(' ');
        bool isX = false;
        bool isY = false;
        bool isZ = false;
        const float x = fields.value(0).toFloat(&isX);
        const float y = fields.value(1).toFloat(&isY);
        const float z = fields.value(2).toFloat(&isZ);
        if (isX && isY) {
            data.hasZ |= isZ;
            data.points.append({x, y, isZ ? z : std::numeric_limits<float>::quiet_NaN(), 0});
        }
    }
    if (data.points.isEmpty()) {
        throw FormatError{QStringLiteral("holds no points")};
    }
    return data;
}

QByteArray formatXyz(const PointData& data) {
    QByteArray text;
    for (const KxPointXYZRGB& p : data.points) {
        text += coordinateText(p.x) + ' ' + coordinateText(p.y);
        if (data.hasZ) {
            text += ' ' + coordinateText(p.z);
        }
        text += '\n';
    }
    return text;
}

PointData parsePly(const QByteArray& content) {
    qsizetype at = 0;
    if (takeLine(content, at) != QByteArray("ply")) {
        throw FormatError{QStringLiteral("is no PLY file")};
    }
    TableData kind = TableData::Ascii;
    std::vector<Column> columns;
    qint64 count = -1;
    bool isVertex = false;
    for (auto line = takeLine(content, at);; line = takeLine(content, at)) {
        if (!line) {
            throw FormatError{QStringLiteral("has a header without an end")};
        }
        const QList<QByteArray> words = line->simplified().split(' ');
        if (words[0] == "end_header") {
            break;
        }
        if (words[0] == "format") {
            if (words.value(1) == "binary_big_endian") {
                throw FormatError{QStringLiteral("is big-endian; only ASCII and little-endian files are read")};
            }
            kind = words.value(1) == "ascii" ? TableData::Ascii : TableData::LittleEndian;
        } else if (words[0] == "element") {
            isVertex = words.value(1) == "vertex";
            if (isVertex) {
                count = words.value(2).toLongLong();
            } else if (count < 0) {
                throw FormatError{QStringLiteral("has other elements before its vertices")};
            }
        } else if (words[0] == "property" && isVertex) {
            columns.push_back(plyColumn(words.value(1), words.value(2)));
        }
    }
    if (count < 0) {
        throw FormatError{QStringLiteral("has no vertices")};
    }
    return readTable(columns, count, kind, content.mid(at));
}

QByteArray formatPly(const PointData& data) {
    QByteArray bytes = "ply\nformat binary_little_endian 1.0\nelement vertex " +
                       QByteArray::number(data.points.size()) +
                       "\nproperty float x\nproperty float y\nproperty float z\n";
    if (data.hasColour) {
        bytes += "property uchar red\nproperty uchar green\nproperty uchar blue\n";
    }
    bytes += "end_header\n";
    for (const KxPointXYZRGB& p : data.points) {
        appendPoint(bytes, p, data.hasZ);
        if (data.hasColour) {
            for (const int shift : {16, 8, 0}) {
                bytes.append(static_cast<char>((p.rgb >> shift) & 0xffu));
            }
        }
    }
    return bytes;
}

PointData parsePcd(const QByteArray& content) {
    qsizetype at = 0;
    std::vector<Column> columns;
    qint64 count = -1;
    for (auto line = takeLine(content, at);; line = takeLine(content, at)) {
        if (!line) {
            throw FormatError{QStringLiteral("has a header without a line DATA")};
        }
        const QList<QByteArray> words = line->simplified().split(' ');
        const auto needColumns = [&] {
            if (words.size() != static_cast<qsizetype>(columns.size()) + 1) {
                throw FormatError{
                    QStringLiteral("has a line %1 that does not fit its FIELDS").arg(QString::fromLatin1(words[0]))};
            }
        };
        if (words[0] == "FIELDS") {
            for (qsizetype i = 1; i < words.size(); ++i) {
                columns.push_back({words[i], 'F', 4});
            }
        } else if (words[0] == "SIZE") {
            needColumns();
            for (size_t i = 0; i < columns.size(); ++i) {
                columns[i].size = words[static_cast<qsizetype>(i) + 1].toInt();
                if (!QList<int>{1, 2, 4, 8}.contains(columns[i].size)) {
                    throw FormatError{QStringLiteral("has a field of an unknown size")};
                }
            }
        } else if (words[0] == "TYPE") {
            needColumns();
            for (size_t i = 0; i < columns.size(); ++i) {
                columns[i].type = words[static_cast<qsizetype>(i) + 1].at(0);
            }
        } else if (words[0] == "COUNT") {
            needColumns();
            if (words.mid(1).count("1") != words.size() - 1) {
                throw FormatError{QStringLiteral("has a field of several numbers")};
            }
        } else if (words[0] == "POINTS") {
            count = words.value(1).toLongLong();
        } else if (words[0] == "DATA") {
            if (words.value(1) != "ascii" && words.value(1) != "binary") {
                throw FormatError{QStringLiteral("has compressed data; only ascii and binary are read")};
            }
            if (count < 0) {
                throw FormatError{QStringLiteral("has no line POINTS")};
            }
            const TableData kind = words.value(1) == "ascii" ? TableData::Ascii : TableData::LittleEndian;
            return readTable(columns, count, kind, content.mid(at));
        }
    }
}

QByteArray formatPcd(const PointData& data) {
    const QByteArray count = QByteArray::number(data.points.size());
    const bool c = data.hasColour;
    QByteArray bytes = QByteArray("VERSION 0.7\nFIELDS x y z") + (c ? " rgb" : "") + "\nSIZE 4 4 4" + (c ? " 4" : "") +
                       "\nTYPE F F F" + (c ? " U" : "") + "\nCOUNT 1 1 1" + (c ? " 1" : "") + "\nWIDTH " + count +
                       "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + count + "\nDATA binary\n";
    for (const KxPointXYZRGB& p : data.points) {
        appendPoint(bytes, p, data.hasZ);
        if (data.hasColour) {
            appendFloat(bytes, std::bit_cast<float>(p.rgb));
        }
    }
    return bytes;
}

} // namespace kxtool
