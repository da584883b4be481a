// Arrays of NumPy: the format of numpy.lib.format (NumPy 1.24), two dimensions of floats.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/mapShape.h"
#include "inspect/formats/pointTable.h"

#include <QtCore/QtEndian>

#include <bit>

namespace KxInspect::detail {

namespace {

constexpr char kMagic[] = "\x93NUMPY";
constexpr qsizetype kMagicSize = 6;

/// What the header says about the data.
struct NpyArray {
    qsizetype begin = 0; ///< of the data, bytes
    int size = 0; ///< of a number, bytes
    bool isByColumns = false; ///< the first index runs fastest
    qint64 rows = 0;
    qint64 columns = 0;
};

[[noreturn]] void failHeader(const ErrorSource& source, ErrorKind kind, const QString& reason) {
    fail(kind, source, reason, {kMagicSize, {}, {}, {}});
}

/// What stands behind 'KEY': in the header, up to the end of the header.
QByteArray behind(const ErrorSource& source, const QByteArray& header, const QByteArray& key) {
    const QByteArray quoted = '\'' + key + "\':";
    const qsizetype at = header.indexOf(quoted);
    if (at < 0) {
        failHeader(source, ErrorKind::Damaged, QStringLiteral("has a header without %1").arg(QLatin1String(key)));
    }
    return header.mid(at + quoted.size()).trimmed();
}

void readShape(const ErrorSource& source, const QByteArray& text, NpyArray& array) {
    const qsizetype end = text.indexOf(')');
    const QList<QByteArray> sizes = text.mid(1, end - 1).split(',');
    bool isRows = false;
    bool isColumns = false;
    if (text.startsWith('(') && end > 0 && sizes.size() == 2) {
        array.rows = sizes[0].trimmed().toLongLong(&isRows);
        array.columns = sizes[1].trimmed().toLongLong(&isColumns);
    }
    if (!isRows || !isColumns || array.rows < 0 || array.columns < 1) {
        failHeader(source, ErrorKind::Unsuitable,
                   QStringLiteral("has an array of the shape '%1', rows and columns are needed")
                       .arg(QString::fromLatin1(text.left(std::min(end + 1, qsizetype(40))))));
    }
}

/// The bytes of the header, behind which the data begin.
QByteArray headerOf(const ErrorSource& source, const QByteArray& content, NpyArray& array) {
    constexpr qsizetype kShort = 10; // magic, version, length of 2 bytes
    constexpr qsizetype kLong = 12; // ... of 4 bytes
    if (!content.startsWith(kMagic)) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("is not an array of NumPy"));
    }
    const bool isShort = content.size() > kMagicSize && content[kMagicSize] == 1;
    const qsizetype head = isShort ? kShort : kLong;
    qsizetype length = content.size();
    if (content.size() >= head) {
        const char* const at = content.constData() + kMagicSize + 2;
        length = isShort ? qsizetype(qFromLittleEndian<quint16>(at)) : qsizetype(qFromLittleEndian<quint32>(at));
    }
    if (content.size() < head || content.size() - head < length) {
        fail(ErrorKind::Damaged, source, QStringLiteral("ends within its header"), {content.size(), {}, {}, {}});
    }
    array.begin = head + length;
    return content.mid(head, length);
}

NpyArray readHeader(const ErrorSource& source, const QByteArray& content) {
    NpyArray array;
    const QByteArray header = headerOf(source, content, array);
    const QByteArray type = behind(source, header, "descr");
    if (!type.startsWith("'<f4'") && !type.startsWith("'<f8'")) {
        failHeader(source, ErrorKind::Unsuitable,
                   QStringLiteral("has numbers of the type %1; only little-endian floats ('<f4', '<f8') are read")
                       .arg(QString::fromLatin1(type.left(type.indexOf(',')).left(40))));
    }
    array.size = type.at(3) - '0';
    array.isByColumns = behind(source, header, "fortran_order").startsWith("True");
    readShape(source, behind(source, header, "shape"), array);
    const qint64 has = (content.size() - array.begin) / array.size;
    const bool isMore = array.rows > has / array.columns;
    if (isMore || (content.size() - array.begin) != array.rows * array.columns * array.size) {
        fail(ErrorKind::Damaged, source,
             QStringLiteral("has %1 bytes behind its header, not those of %2 x %3 numbers")
                 .arg(content.size() - array.begin)
                 .arg(array.rows)
                 .arg(array.columns),
             {content.size(), {}, {}, {}});
    }
    return array;
}

float numberAt(const QByteArray& content, const NpyArray& array, qint64 row, qint64 column) {
    const qint64 index = array.isByColumns ? column * array.rows + row : row * array.columns + column;
    const char* const at = content.constData() + array.begin + index * array.size;
    return array.size == 4 ? std::bit_cast<float>(qFromLittleEndian<quint32>(at))
                           : static_cast<float>(std::bit_cast<double>(qFromLittleEndian<quint64>(at)));
}

bool isPoints(qint64 columns) {
    return columns == 2 || columns == 3;
}

QByteArray headerText(qint64 rows, qint64 columns) {
    constexpr qsizetype kAlignment = 64;
    constexpr qsizetype kHead = 10;
    QByteArray text = "{'descr': '<f4', 'fortran_order': False, 'shape': (" + QByteArray::number(rows) + ", " +
                      QByteArray::number(columns) + "), }";
    text.append(kAlignment - 1 - (kHead + text.size()) % kAlignment, ' ');
    text += '\n';
    QByteArray bytes(kMagic, kMagicSize);
    bytes.append("\x01\x00", 2);
    bytes.append(static_cast<char>(text.size()));
    bytes.append('\0');
    return bytes + text; // its length is below 256
}

} // namespace

HeightMap parseNpyMap(const ErrorSource& source, const QByteArray& content) {
    const NpyArray array = readHeader(source, content);
    if (isPoints(array.columns)) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("has %1 columns: points, no heights").arg(array.columns));
    }
    HeightMap map;
    setShape(source, array.rows, array.columns, map);
    map.originX = map.originZ = 0.0f;
    map.heights.reserve(static_cast<std::size_t>(array.rows * array.columns));
    for (qint64 row = 0; row < array.rows; ++row) {
        for (qint64 column = 0; column < array.columns; ++column) {
            map.heights.push_back(numberAt(content, array, row, column));
        }
    }
    return map;
}

PointSet parseNpyPoints(const ErrorSource& source, const QByteArray& content) {
    const NpyArray array = readHeader(source, content);
    if (!isPoints(array.columns)) {
        fail(ErrorKind::Unsuitable, source,
             QStringLiteral("has %1 columns; points have 2 or 3, and heights need a pitch").arg(array.columns));
    }
    PointSet set;
    set.hasZ = array.columns == 3;
    set.points.resize(static_cast<std::size_t>(array.rows));
    for (qint64 row = 0; row < array.rows; ++row) {
        Point3& p = set.points[static_cast<std::size_t>(row)];
        p.x = numberAt(content, array, row, 0);
        p.y = numberAt(content, array, row, 1);
        p.z = set.hasZ ? numberAt(content, array, row, 2) : p.z;
    }
    return set;
}

QByteArray formatNpyMap(const ErrorSource& source, const HeightMap& map) {
    if (isPoints(map.columns)) {
        fail(ErrorKind::Unwritable, source,
             QStringLiteral("cannot hold a map of %1 columns: an array of 2 or 3 columns is read as points")
                 .arg(map.columns));
    }
    QByteArray bytes = headerText(map.rows, map.columns);
    bytes.reserve(bytes.size() + static_cast<qsizetype>(map.heights.size() * sizeof(float)));
    for (const float height : map.heights) {
        appendFloat(bytes, height);
    }
    return bytes;
}

QByteArray formatNpyPoints(const PointSet& set) {
    QByteArray bytes = headerText(static_cast<qint64>(set.points.size()), set.hasZ ? 3 : 2);
    for (const Point3& p : set.points) {
        appendFloat(bytes, p.x);
        appendFloat(bytes, p.y);
        if (set.hasZ) {
            appendFloat(bytes, p.z);
        }
    }
    return bytes;
}

} // namespace KxInspect::detail
