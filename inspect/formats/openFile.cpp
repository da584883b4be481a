// Opening and reading files.
#include "inspect/formats/openFile.h"

#include "inspect/base/error.h"
#include "inspect/base/memory.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

namespace KxInspect::detail {

namespace {

QString cannotBeRead(const QFile& file) {
    return QStringLiteral("cannot be read: %1").arg(file.errorString());
}

/// Reads a pipe or a device to its end and opens a copy in its place, which goes away with `file`.
void spool(QFile& file, const ErrorSource& source) {
    constexpr qint64 kMost = qint64(1) << 30;
    constexpr qint64 kBlock = 1 << 20;
    needMemoryForSettings(0);
    QTemporaryFile copy;
    bool isCopied = copy.open();
    while (isCopied) {
        const QByteArray block = file.read(kBlock);
        if (file.error() != QFileDevice::NoError) {
            fail(ErrorKind::Unreadable, source, cannotBeRead(file));
        }
        if (block.isEmpty()) {
            break;
        }
        isCopied = copy.write(block) == block.size() && copy.flush();
        if (copy.pos() > kMost) {
            fail(ErrorKind::Unsuitable, source, QStringLiteral("does not end within 1 GiB"));
        }
    }
    file.close();
    file.setFileName(copy.fileName());
    if (!isCopied || !file.open(QIODevice::ReadOnly)) {
        fail(ErrorKind::Unreadable, source,
             QStringLiteral("cannot be copied into a temporary file: ") +
                 (isCopied ? file.errorString() : copy.errorString()));
    }
}

} // namespace

void openForReading(QFile& file, const ErrorSource& source) {
    if (QFileInfo(file).isDir()) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("cannot be read: it is a folder"));
    }
    if (!file.open(QIODevice::ReadOnly)) {
        fail(file.exists() ? ErrorKind::Unreadable : ErrorKind::NotFound, source, cannotBeRead(file));
    }
    if (file.isSequential() || !QFileInfo(file).isFile()) {
        spool(file, source);
    }
}

void checkWhole(const QIODevice& device, const ErrorSource& source) {
    if (!device.isSequential() && device.pos() < device.size()) {
        fail(ErrorKind::Unreadable, source,
             QStringLiteral("cannot be read: it ends at byte %1 of %2").arg(device.pos()).arg(device.size()));
    }
}

QByteArray readAll(QFile& file, const ErrorSource& source) {
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        fail(ErrorKind::Unreadable, source, cannotBeRead(file));
    }
    checkWhole(file, source);
    return content;
}

} // namespace KxInspect::detail
