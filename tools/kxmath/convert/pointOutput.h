// Points as the output of a command.
#pragma once

#include <KxInspect/PointFile.h>

#include <QtCore/QString>

namespace kxtool {

/// Writes a file of points, or the standard output for "-", and says on stderr what the kind does not hold.
void writePointOutput(const char* command, const QString& name, KxInspect::FileKind kind,
                      const KxInspect::PointSet& points);

} // namespace kxtool
