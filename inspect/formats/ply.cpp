// Stanford polygon format.
#include "inspect/formats/pointTable.h"
#include "inspect/formats/viewerFormats.h"

#include <limits>

namespace KxInspect::detail {

namespace {

/// The description of the vertices in a header.
struct PlyVertices {
    TableData kind = TableData::Ascii;
    std::vector<Column> columns;
    TableRows rows;
};

Column plyColumn(const FileHeader& header, const QByteArray& type, const QByteArray& name) {
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
    header.fail(ErrorKind::Unsuitable, QStringLiteral("has a column of the type '%1'").arg(QString::fromLatin1(type)));
}

TableData plyData(const FileHeader& header, const QByteArray& format) {
    if (format == "binary_big_endian") {
        header.fail(ErrorKind::Unsuitable,
                    QStringLiteral("is big-endian; only ASCII and little-endian files are read"));
    }
    return format == "ascii" ? TableData::Ascii : TableData::LittleEndian;
}

/// The sum, or the largest number if it is beyond.
qint64 addCounts(qint64 a, qint64 b) {
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    return a > kMost - b ? kMost : a + b;
}

PlyVertices readPlyHeader(FileHeader& header) {
    if (const auto first = header.nextLine(); !first || first->size() != 1 || first->constFirst() != "ply") {
        header.failWhole(ErrorKind::Unsuitable, QStringLiteral("is not a PLY file"));
    }
    PlyVertices vertices;
    bool isVertex = false;
    for (auto words = header.nextLine();; words = header.nextLine()) {
        if (!words) {
            header.failWhole(ErrorKind::Damaged, QStringLiteral("has a header without an end"));
        }
        const QByteArray& key = words->constFirst();
        if (key == "end_header") {
            return vertices;
        }
        if (key == "format") {
            vertices.kind = plyData(header, words->value(1));
        } else if (key == "element") {
            isVertex = words->value(1) == "vertex";
            const qint64 count = readCount(header, words->value(2));
            if (isVertex) {
                vertices.rows.count = count;
            } else if (vertices.rows.count < 0) {
                header.fail(ErrorKind::Unsuitable, QStringLiteral("has other elements before its vertices"));
            } else {
                vertices.rows.behind = addCounts(vertices.rows.behind, count);
            }
        } else if (key == "property" && isVertex) {
            vertices.columns.push_back(plyColumn(header, words->value(1), words->value(2)));
        }
    }
}

} // namespace

PointSet parsePly(const ErrorSource& source, const QByteArray& content) {
    FileHeader header(source, content);
    const PlyVertices vertices = readPlyHeader(header);
    if (vertices.rows.count < 0) {
        header.failWhole(ErrorKind::Unsuitable, QStringLiteral("has no vertices"));
    }
    return readTable(header, vertices.columns, vertices.rows, vertices.kind);
}

QByteArray formatPly(const PointSet& set) {
    QByteArray bytes = "ply\nformat binary_little_endian 1.0\nelement vertex " +
                       QByteArray::number(static_cast<qint64>(set.points.size())) +
                       "\nproperty float x\nproperty float y\nproperty float z\n";
    if (set.hasColours) {
        bytes += "property uchar red\nproperty uchar green\nproperty uchar blue\n";
    }
    bytes += "end_header\n";
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        appendPoint(bytes, set.points[i], set.hasZ);
        if (set.hasColours) {
            for (const int shift : {16, 8, 0}) {
                bytes.append(static_cast<char>((set.colours[i] >> shift) & 0xffu));
            }
        }
    }
    return bytes;
}

} // namespace KxInspect::detail
