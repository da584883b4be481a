// The formats that point cloud viewers open: parsed from and formatted as the bytes of a file.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QByteArray>

namespace KxInspect::detail {

/// Columns x y [z] separated by blanks.
QByteArray formatXyz(const PointSet& points);

/// Stanford polygon format (G. Turk, 1994): the vertices of ASCII and little-endian files. Written as little-endian.
PointSet parsePly(const ErrorSource& source, const QByteArray& content);
QByteArray formatPly(const PointSet& points);

/// Point Cloud Data, version 0.7: ASCII and uncompressed binary. Written as binary; a colour is packed into rgb.
PointSet parsePcd(const ErrorSource& source, const QByteArray& content);
QByteArray formatPcd(const PointSet& points);

} // namespace KxInspect::detail
