// A file whose bytes are hashed while it is read.
#include "inspect/recordings/hashedFile.h"

#include <algorithm>

namespace KxInspect::detail {

void HashedFile::startHash(qint64 end) {
    hash_.emplace();
    end_ = end;
    at_ = pos();
    hashed_ = 0;
}

std::optional<std::string> HashedFile::hash() const {
    return hash_ && hashed_ == end_ ? std::optional(hash_->text()) : std::nullopt;
}

bool HashedFile::seek(qint64 offset) {
    const bool isDone = QFile::seek(offset);
    at_ = isDone ? offset : at_;
    return isDone;
}

qint64 HashedFile::readData(char* data, qint64 size) {
    const qint64 count = QFile::readData(data, size);
    const qint64 from = at_;
    at_ += std::max<qint64>(count, 0);
    const qint64 to = std::min(at_, end_);
    if (hash_ && from <= hashed_ && to > hashed_) {
        hash_->add(data + (hashed_ - from), static_cast<std::size_t>(to - hashed_));
        hashed_ = to;
    }
    return count;
}

} // namespace KxInspect::detail
