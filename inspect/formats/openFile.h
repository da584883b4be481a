// Opening and reading files.
#pragma once

#include <KxInspect/Error.h>

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace KxInspect::detail {

/// Opens a file. Throws an Error NotFound or Unreadable.
void openForReading(QFile& file, const ErrorSource& source);

/// The rest of an open file. Throws an Error Unreadable.
QByteArray readAll(QFile& file, const ErrorSource& source);

/// The whole content of a file. Throws an Error NotFound or Unreadable.
QByteArray readAll(const ErrorSource& source);

} // namespace KxInspect::detail
