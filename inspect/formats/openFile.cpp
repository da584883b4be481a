// Opening and reading files.
#include "inspect/formats/openFile.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

namespace KxInspect::detail {

namespace {

QString cannotBeRead(const QFile& file) {
    return QStringLiteral("cannot be read: %1").arg(file.errorString());
}

} // namespace

void openForReading(QFile& file, const ErrorSource& source) {
    if (!file.open(QIODevice::ReadOnly)) {
        fail(file.exists() ? ErrorKind::Unreadable : ErrorKind::NotFound, source, cannotBeRead(file));
    }
}

QByteArray readAll(const ErrorSource& source) {
    const QtPath where(source.file);
    QFile file(where.text());
    openForReading(file, source);
    return readAll(file, source);
}

QByteArray readAll(QFile& file, const ErrorSource& source) {
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        fail(ErrorKind::Unreadable, source, cannotBeRead(file));
    }
    return content;
}

} // namespace KxInspect::detail
