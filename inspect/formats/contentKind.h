// The kind of a file by its content.
#pragma once

#include <KxInspect/PointFile.h>

#include <QtCore/QIODevice>

namespace KxInspect::detail {

/// kindOfFile() of an open file, whose position stays.
std::optional<FileKind> kindOfFile(QIODevice& file, const std::string& name);

} // namespace KxInspect::detail
