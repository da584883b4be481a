// Files of many small records, in large blocks.
#pragma once

#include "io/binaryIo.h"

#include <QtCore/QByteArray>

namespace KxMath::detail {

/// Reads a file a block ahead. The position of the file itself has no meaning meanwhile.
class BlockReader {
public:
    explicit BlockReader(QFile& file) : file_(file) {}

    /// Reads up to `size` bytes and returns how many arrived; only the end of the data or an error makes them fewer.
    qint64 read(char* data, qint64 size);
    qint64 bytesAvailable() const { return end_ - at_ + file_.bytesAvailable(); }

private:
    qint64 take(char* data, qint64 size);

    QFile& file_;
    QByteArray block_;
    qint64 at_ = 0;
    qint64 end_ = 0; ///< of what the block holds
};

inline qint64 readBytes(BlockReader& file, char* data, qint64 size) {
    return file.read(data, size);
}

/// Collects what is written to a file. The last block is written by flush() only.
class BlockWriter {
public:
    explicit BlockWriter(QFile& file) : file_(file) {}

    /// @return false when a block could not be written
    bool write(const char* data, qint64 size);
    /// @return false when not all could be written
    bool flush();

private:
    QFile& file_;
    QByteArray block_;
};

inline bool writeBytes(BlockWriter& file, const char* data, qint64 size) {
    return file.write(data, size);
}

} // namespace KxMath::detail
