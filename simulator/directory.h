// The directory that takes what is simulated.
#pragma once

#include <KxInspect/Error.h>

#include <QtCore/QDir>

namespace kxsim {

/// Makes a directory where it is missing. Throws a KxInspect::Error when that is not possible.
inline void makeDirectory(const QString& path) {
    if (!QDir().mkpath(path)) {
        throw KxInspect::Error(KxInspect::ErrorKind::Unwritable, {"the directory", path.toStdString(), {}},
                               "cannot be made");
    }
}

} // namespace kxsim
