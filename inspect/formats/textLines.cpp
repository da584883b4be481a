// The lines of a text file, read block by block.
#include "inspect/formats/textLines.h"

#include "inspect/formats/openFile.h"

#include <QtCore/QByteArray>

#include <algorithm>
#include <cstring>

namespace KxInspect::detail {

namespace {

constexpr qint64 kBlock = 1 << 18; // bytes
constexpr std::size_t kLongestLine = 1 << 20;
constexpr QByteArrayView kUtf8Mark = "\xef\xbb\xbf";

} // namespace

TextLines::TextLines(QIODevice& device, const ErrorSource& source) : device_(device), source_(source) {
    rewind();
}

void TextLines::rewind() {
    if (!device_.seek(0)) {
        fail(ErrorKind::Unreadable, source_, QStringLiteral("cannot be read: %1").arg(device_.errorString()));
    }
    begin_ = searched_ = end_ = 0;
    isAtEnd_ = false;
    line_ = lineByte_ = nextByte_ = 0;
    decoder_.reset();
    const QByteArray head = device_.peek(3);
    if (head.startsWith(kUtf8Mark)) {
        device_.skip(kUtf8Mark.size());
        nextByte_ = kUtf8Mark.size();
    } else if (head.startsWith("\xff\xfe")) {
        decoder_ = std::make_unique<QStringDecoder>(QStringDecoder::Utf16LE);
    } else if (head.startsWith("\xfe\xff")) {
        decoder_ = std::make_unique<QStringDecoder>(QStringDecoder::Utf16BE);
    }
}

qint64 TextLines::read(char* data, qint64 size) {
    const qint64 count = device_.read(data, size);
    if (count < 0) {
        fail(ErrorKind::Unreadable, source_, QStringLiteral("cannot be read: %1").arg(device_.errorString()));
    }
    if (count == 0) {
        checkWhole(device_, source_);
    }
    return count;
}

void TextLines::refill() {
    const auto start = buffer_.begin();
    std::copy(start + static_cast<std::ptrdiff_t>(begin_), start + static_cast<std::ptrdiff_t>(end_), start);
    end_ -= begin_;
    searched_ -= begin_;
    begin_ = 0;
    buffer_.resize(end_ + kBlock);
    if (!decoder_) {
        const qint64 count = read(buffer_.data() + end_, kBlock);
        isAtEnd_ = count == 0;
        end_ += static_cast<std::size_t>(count);
        return;
    }
    QByteArray block(kBlock / 2, Qt::Uninitialized);
    block.truncate(read(block.data(), block.size()));
    isAtEnd_ = block.isEmpty();
    const QByteArray utf8 = QString(decoder_->decode(block)).toUtf8();
    buffer_.resize(end_ + static_cast<std::size_t>(utf8.size()));
    std::copy(utf8.cbegin(), utf8.cend(), buffer_.begin() + static_cast<std::ptrdiff_t>(end_));
    end_ = buffer_.size();
}

std::optional<std::string_view> TextLines::next() {
    for (;;) {
        const void* const found =
            searched_ < end_ ? std::memchr(buffer_.data() + searched_, '\n', end_ - searched_) : nullptr;
        if (found == nullptr && !isAtEnd_) {
            searched_ = end_;
            if (end_ - begin_ > kLongestLine) {
                fail(ErrorKind::Unsuitable, source_,
                     QStringLiteral("has a line of more than 1 MiB, line %1").arg(line_ + 1),
                     {nextByte_, {}, line_ + 1, {}});
            }
            refill();
            continue;
        }
        if (found == nullptr && begin_ == end_) {
            return {};
        }
        const std::size_t end =
            found == nullptr ? end_ : static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
        std::string_view text(buffer_.data() + begin_, end - begin_);
        ++line_;
        lineByte_ = nextByte_;
        nextByte_ += static_cast<std::int64_t>(text.size()) + 1;
        begin_ = searched_ = std::min(end + 1, end_);
        if (!text.empty() && text.back() == '\r') {
            text.remove_suffix(1);
        }
        return text;
    }
}

std::int64_t TextLines::countLineEnds() {
    rewind();
    buffer_.resize(std::max<std::size_t>(buffer_.size(), kBlock));
    std::int64_t count = 0;
    for (qint64 size = read(buffer_.data(), kBlock); size > 0; size = read(buffer_.data(), kBlock)) {
        count += std::count(buffer_.data(), buffer_.data() + size, '\n');
    }
    rewind();
    return count;
}

ErrorPlace TextLines::place() const {
    return {decoder_ ? std::nullopt : std::optional(lineByte_), {}, line_, {}};
}

} // namespace KxInspect::detail
