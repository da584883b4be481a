// Tables of points with named columns, as the viewers' formats hold them.
#pragma once

#include "inspect/formats/fileHeader.h"

#include <KxInspect/PointFile.h>

#include <vector>

namespace KxInspect::detail {

/// One column: its name and the type of its numbers in binary data.
struct Column {
    QByteArray name;
    char type; ///< 'F' float, 'I' signed, 'U' unsigned
    int size; ///< bytes
};

enum class TableData { Ascii, LittleEndian };

/// Reads `count` rows after the header. The columns x, y and z become coordinates, red, green and blue or rgb (packed)
/// the colour; others are skipped. `count` is not trusted: an Error is thrown when there are fewer rows.
PointSet readTable(const FileHeader& header, const std::vector<Column>& columns, qint64 count, TableData kind);

/// A coordinate as text that reads back as the same float.
QByteArray coordinateText(float value);

/// @{ Appends little-endian floats: a value; the coordinates of a point, with z = 0 if it has none.
void appendFloat(QByteArray& bytes, float value);
void appendPoint(QByteArray& bytes, const Point3& p, bool hasZ);
/// @}

} // namespace KxInspect::detail
