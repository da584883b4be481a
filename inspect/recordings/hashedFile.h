// A file whose bytes are hashed while it is read.
#pragma once

#include "inspect/base/sha256.h"

#include <QtCore/QFile>

#include <optional>

namespace KxInspect::detail {

/// Reads as QFile does. Each byte that comes from the system for the first time passes through the hash, in order: a file
/// that is read from its beginning to its end is hashed without being read again.
class HashedFile : public QFile {
public:
    /// @param end bytes behind it are not hashed, which a file may get while it is read
    void startHash(qint64 end);

    /// The hash when all bytes before the end were read, else nothing.
    std::optional<std::string> hash() const;

    bool seek(qint64 offset) override;

protected:
    qint64 readData(char* data, qint64 size) override;

private:
    std::optional<Sha256> hash_;
    qint64 end_ = 0;
    qint64 at_ = 0; ///< of the system's next byte
    qint64 hashed_ = 0;
};

} // namespace KxInspect::detail
