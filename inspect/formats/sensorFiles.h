// The kinds of point files that sensors write: clouds, profile records, CSV and bare coordinates.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QFile>

namespace KxInspect::detail {

/// @{ Reads an open file. Throws the errors of readPoints().
PointSet readCloudFile(QFile& file, const ErrorSource& source);
PointSet readProfileRecords(QFile& file, const ErrorSource& source);
PointSet readXyzfFile(QFile& file, const ErrorSource& source);
PointSet readNumberedRecord(QFile& file, const ErrorSource& source, std::int64_t number); ///< from 1 on
/// @}

/// @{ Writes a file. Throws the errors of writePoints().
void writeCloudFile(const ErrorSource& source, const PointSet& points);
void writeProfileRecords(const ErrorSource& source, const PointSet& points);
void writeCsvFile(const ErrorSource& source, const PointSet& points);
void writeXyzfFile(const ErrorSource& source, const PointSet& points);
/// @}

} // namespace KxInspect::detail
