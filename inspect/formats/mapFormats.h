// The formats of height maps and meshes: parsed from and formatted as the bytes of a file.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/HeightMap.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QByteArray>

namespace KxInspect::detail {

/// @{ Gwyddion Simple Field 1.0: a text header, then little-endian floats; metres, rows from the top.
HeightMap parseGsf(const ErrorSource& source, const QByteArray& content);
QByteArray formatGsf(const HeightMap& map);
/// @}

/// @{ Surface data file of ISO 25178-71:2017 as text, in metres. The origin is in the trailer, which is free.
HeightMap parseSdf(const ErrorSource& source, const QByteArray& content);
QByteArray formatSdf(const ErrorSource& source, const HeightMap& map);
/// @}

/// @{ Array of NumPy, format version 1.0 (2.0 and 3.0 are read): a map without places, or rows of coordinates.
HeightMap parseNpyMap(const ErrorSource& source, const QByteArray& content);
PointSet parseNpyPoints(const ErrorSource& source, const QByteArray& content);
QByteArray formatNpyMap(const ErrorSource& source, const HeightMap& map);
QByteArray formatNpyPoints(const PointSet& points);
/// @}

/// @{ XML files of VTK, version 1.0: an image in the plane of x and z with the heights as its values; points.
HeightMap parseVti(const ErrorSource& source, const QByteArray& content);
QByteArray formatVti(const HeightMap& map);
PointSet parseVtp(const ErrorSource& source, const QByteArray& content);
QByteArray formatVtp(const PointSet& points);
/// @}

/// @{ Triangles: bytes and text are read, bytes written.
PointSet parseStl(const ErrorSource& source, const QByteArray& content);
QByteArray formatStl(const ErrorSource& source, const HeightMap& map);
/// @}

/// @{ CSV with a header.
PointSet parseTable(const ErrorSource& source, const QByteArray& content);
QByteArray formatTable(const PointSet& points);
/// @}

/// One profile as text of a contact profile gauge. `isBlock`: between lines begin and end, otherwise behind entries.
QByteArray formatGauge(const PointSet& points, bool isBlock);

} // namespace KxInspect::detail
