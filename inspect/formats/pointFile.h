// Points from open files.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QFile>

namespace KxInspect::detail {

/// readPoints() of a file that openForReading() has opened, from its beginning.
PointSet readPoints(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options = {});

} // namespace KxInspect::detail
