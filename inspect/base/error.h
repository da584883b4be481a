// Throwing errors with Qt strings.
#pragma once

#include <KxInspect/Error.h>

#include <QtCore/QString>

namespace KxInspect::detail {

/// Throws an Error about a file: "ROLE 'FILE' REASON".
[[noreturn]] inline void fail(ErrorKind kind, const ErrorSource& source, const QString& reason,
                              const ErrorPlace& place = {}) {
    throw Error(kind, source, reason.toStdString(), place);
}

} // namespace KxInspect::detail
