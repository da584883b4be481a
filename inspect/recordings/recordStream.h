// The records of a recording, one after the other, as profiles of KxMath.
#pragma once

#include "inspect/recordings/hashedFile.h"

#include <KxInspect/Error.h>
#include <KxMath/KxRecording.h>

namespace KxInspect::detail {

/// Reads a recording once from its beginning to its end.
class RecordStream {
public:
    /// Opens the file. Throws an Error when there is none, or when it cannot be read or is empty.
    explicit RecordStream(const ErrorSource& source);

    /// Before the first record: hashes the file while it is read.
    void startHash() { file_.startHash(size_); }

    /// Reads the next record. Throws an Error where the file is damaged, cut short or cannot be read on.
    /// @return its kind, KxNoRecord at the end of the file
    KxMath::KxRecordKind next(KxMath::KxProfileZ& profile);

    int records() const { return records_; } ///< read so far
    qint64 position() const { return file_.pos(); }
    qint64 size() const { return size_; }
    /// SHA-256 of the file when it was asked for and all records were read, else empty.
    std::string sha256() const { return file_.hash().value_or(std::string()); }

private:
    ErrorSource source_;
    HashedFile file_;
    qint64 size_ = 0;
    int records_ = 0;
};

} // namespace KxInspect::detail
