// Point Cloud Data.
#include "inspect/formats/pointTable.h"
#include "inspect/formats/viewerFormats.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace KxInspect::detail {

namespace {

using Words = QList<QByteArray>;

/// The description of the points in a header.
struct PcdPoints {
    std::vector<Column> columns;
    TableRows rows;
};

/// The words of a line behind the first. Appended one by one: QList::mid() does not check for memory.
Words behindKey(const Words& words) {
    Words rest;
    std::copy(words.cbegin() + 1, words.cend(), std::back_inserter(rest));
    return rest;
}

/// The words of a line with one word per column.
Words columnWords(const FileHeader& header, const Words& words, const PcdPoints& points) {
    if (words.size() != static_cast<qsizetype>(points.columns.size()) + 1) {
        header.fail(
            ErrorKind::Damaged,
            QStringLiteral("has a line %1 that does not fit its FIELDS").arg(QString::fromLatin1(words.constFirst())));
    }
    return behindKey(words);
}

void readSizes(const FileHeader& header, const Words& sizes, PcdPoints& points) {
    for (std::size_t i = 0; i < points.columns.size(); ++i) {
        const int size = sizes[static_cast<qsizetype>(i)].toInt();
        if (size != 1 && size != 2 && size != 4 && size != 8) {
            header.fail(ErrorKind::Unsuitable, QStringLiteral("has a field of an unknown size"));
        }
        points.columns[i].size = size;
    }
}

/// Processes a line other than DATA.
void readPcdLine(const FileHeader& header, const Words& words, PcdPoints& points) {
    const QByteArray& key = words.constFirst();
    if (key == "FIELDS") {
        for (const QByteArray& name : behindKey(words)) {
            points.columns.push_back({name, 'F', 4});
        }
    } else if (key == "SIZE") {
        readSizes(header, columnWords(header, words, points), points);
    } else if (key == "TYPE") {
        const Words types = columnWords(header, words, points);
        for (std::size_t i = 0; i < points.columns.size(); ++i) {
            points.columns[i].type = types[static_cast<qsizetype>(i)].at(0);
        }
    } else if (key == "COUNT") {
        const Words counts = columnWords(header, words, points);
        if (counts.count("1") != counts.size()) {
            header.fail(ErrorKind::Unsuitable, QStringLiteral("has a field of several numbers"));
        }
    } else if (key == "POINTS") {
        points.rows.count = readCount(header, words.value(1));
    }
}

} // namespace

PointSet parsePcd(const ErrorSource& source, const QByteArray& content) {
    FileHeader header(source, content);
    PcdPoints points;
    auto words = header.nextLine();
    for (; words && words->constFirst() != "DATA"; words = header.nextLine()) {
        readPcdLine(header, *words, points);
    }
    if (!words) {
        header.failWhole(ErrorKind::Damaged, QStringLiteral("has a header without a line DATA"));
    }
    const QByteArray data = words->value(1);
    if (data != "ascii" && data != "binary") {
        header.fail(ErrorKind::Unsuitable, QStringLiteral("has compressed data; only ascii and binary are read"));
    }
    if (points.rows.count < 0) {
        header.failWhole(ErrorKind::Damaged, QStringLiteral("has no line POINTS"));
    }
    return readTable(header, points.columns, points.rows, data == "ascii" ? TableData::Ascii : TableData::LittleEndian);
}

QByteArray formatPcd(const PointSet& set) {
    const QByteArray count = QByteArray::number(static_cast<qint64>(set.points.size()));
    const bool c = set.hasColours;
    QByteArray bytes = QByteArray("VERSION 0.7\nFIELDS x y z") + (c ? " rgb" : "") + "\nSIZE 4 4 4" + (c ? " 4" : "") +
                       "\nTYPE F F F" + (c ? " U" : "") + "\nCOUNT 1 1 1" + (c ? " 1" : "") + "\nWIDTH " + count +
                       "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " + count + "\nDATA binary\n";
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        appendPoint(bytes, set.points[i], set.hasZ);
        if (set.hasColours) {
            appendFloat(bytes, std::bit_cast<float>(set.colours[i]));
        }
    }
    return bytes;
}

} // namespace KxInspect::detail
