// Files of many small records, in large blocks.
#include "io/blocks.h"

namespace KxMath::detail {

namespace {

constexpr qint64 kBlockSize = 131072; // stays in the cache

} // namespace

qint64 BlockReader::take(char* data, qint64 size) {
    const qint64 taken = std::min(size, end_ - at_);
    std::copy_n(block_.constData() + at_, taken, data);
    at_ += taken;
    return taken;
}

qint64 BlockReader::read(char* data, qint64 size) {
    qint64 total = take(data, size);
    while (total < size) {
        if (block_.isEmpty()) {
            block_ = QByteArray(kBlockSize, Qt::Uninitialized);
        }
        at_ = 0;
        end_ = readBytes(file_, block_.data(), kBlockSize);
        if (end_ == 0) {
            break;
        }
        total += take(data + total, size - total);
    }
    return total;
}

bool BlockWriter::write(const char* data, qint64 size) {
    block_.append(data, size);
    return block_.size() < kBlockSize || flush();
}

bool BlockWriter::flush() {
    const bool isWritten = block_.isEmpty() || writeBytes(file_, block_.constData(), block_.size());
    block_.resize(0); // keeps its memory
    return isWritten;
}

} // namespace KxMath::detail
