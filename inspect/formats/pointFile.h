// Reading and writing the kinds of point files.
#pragma once

#include "inspect/formats/pointData.h"

namespace kxtool {

/// Reads all points of a file. Throws a FormatError when it cannot be read, is of another kind or is damaged.
PointData readPointFile(const QString& path, Format format);

/// Writes a file of the kind, replacing an existing one. Throws a FormatError when it cannot be written, or when the
/// kind cannot hold the data (several profiles in a CSV file, say).
void writePointFile(const QString& path, Format format, const PointData& data);

} // namespace kxtool
