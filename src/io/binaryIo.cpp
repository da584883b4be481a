// Little-endian fields and records over QFile.
#include "io/binaryIo.h"

namespace KxMath::detail {

qint64 readBytes(QFile& file, char* data, qint64 size) {
    qint64 total = 0;
    while (total < size && file.isReadable()) { // asked to read another device, Qt prints a warning
        const qint64 arrived = file.read(data + total, size - total);
        if (arrived <= 0) {
            break;
        }
        total += arrived;
    }
    return total;
}

bool writeBytes(QFile& file, const char* data, qint64 size) {
    return file.isWritable() && file.write(data, size) == size;
}

bool openForReading(QFile& file) {
    return !file.fileName().isEmpty() && file.open(QIODevice::ReadOnly);
}

bool openForWriting(QFile& file) {
    return !file.fileName().isEmpty() && file.open(QIODevice::ReadWrite | QIODevice::Truncate);
}

bool closeWritten(QFile& file) {
    const bool flushed = file.flush();
    file.close();
    return flushed && file.error() == QFileDevice::NoError;
}

} // namespace KxMath::detail
