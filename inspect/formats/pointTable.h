// Tables of points with named columns, as the viewers' formats hold them.
#pragma once

#include "inspect/formats/pointData.h"

#include <QtCore/QByteArray>

#include <vector>

namespace kxtool {

/// One column: its name and the type of its numbers in binary data.
struct Column {
    QByteArray name;
    char type; ///< 'F' float, 'I' signed, 'U' unsigned
    int size; ///< bytes
};

enum class TableData { Ascii, LittleEndian };

/// Reads `count` rows from `data`. The columns x, y and z become coordinates, red, green and blue or rgb (packed) the
/// colour; others are passed over. `count` is a claim: a FormatError is thrown when there is less.
PointData readTable(const std::vector<Column>& columns, qint64 count, TableData kind, const QByteArray& data);

/// A coordinate as text that reads back as the same float.
QByteArray coordinateText(float value);

} // namespace kxtool
