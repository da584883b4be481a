// Opening and reading files.
#pragma once

#include <KxInspect/Error.h>

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace KxInspect::detail {

/// Opens a file. What cannot be read twice, a pipe or a device, is read to its end into a temporary file first. Throws an
/// Error NotFound or Unreadable, Unsuitable for a folder and for what does not end within 1 GiB.
void openForReading(QFile& file, const ErrorSource& source);

/// Throws an Error Unreadable unless the device was read up to its end: a read that brings nothing does not tell so.
void checkWhole(const QIODevice& device, const ErrorSource& source);

/// The rest of an open file. Throws an Error Unreadable.
QByteArray readAll(QFile& file, const ErrorSource& source);

} // namespace KxInspect::detail
