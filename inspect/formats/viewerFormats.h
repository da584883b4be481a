// The formats that point cloud viewers open.
#pragma once

#include "inspect/formats/pointData.h"

#include <QtCore/QByteArray>

namespace kxtool {

/// Columns x y [z] separated by blanks, tabs or semicolons; lines that do not begin with two numbers are passed over.
PointData parseXyz(const QByteArray& content);
QByteArray formatXyz(const PointData& data);

/// Stanford polygon format (G. Turk, 1994): the vertices of ASCII and little-endian files. Written as little-endian.
PointData parsePly(const QByteArray& content);
QByteArray formatPly(const PointData& data);

/// Point cloud data, version 0.7: ASCII and uncompressed binary. Written as binary; a colour is packed into rgb.
PointData parsePcd(const QByteArray& content);
QByteArray formatPcd(const PointData& data);

} // namespace kxtool
