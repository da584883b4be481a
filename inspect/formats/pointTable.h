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

/// What a header says about the rows.
struct TableRows {
    qint64 count = -1; ///< of points; -1: not said
    qint64 behind = 0; ///< lines of other data behind the points of a text; 0: nothing may follow
    char separator = ' '; ///< of the columns of a text
};

/// A count in a header. Throws an Error Damaged when it is none.
qint64 readCount(const FileHeader& header, const QByteArray& text);

/// Reads the rows behind the header. The columns x, y and z become coordinates, red, green and blue or rgb (packed) the
/// colour, a profile begins where the column profile changes; others are passed over. The count is a claim: an Error is thrown when there are fewer rows or more, and, with
/// line and column, for a field of a text that is no number.
PointSet readTable(const FileHeader& header, const std::vector<Column>& columns, const TableRows& rows, TableData kind);

/// A coordinate as text that reads back as the same float.
QByteArray coordinateText(float value);

/// @{ Appends little-endian floats: a value; the coordinates of a point, with z = 0 if it has none.
void appendFloat(QByteArray& bytes, float value);
void appendPoint(QByteArray& bytes, const Point3& p, bool hasZ);
/// @}

} // namespace KxInspect::detail
