// The lines of a text file, read block by block.
#pragma once

#include "inspect/base/error.h"

#include <QtCore/QIODevice>
#include <QtCore/QStringConverter>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace KxInspect::detail {

/// Reads an open device line by line, as UTF-8 and without line ends and byte order mark. UTF-16 is recognized by its
/// byte order mark. Memory follows the longest line, of which there is a limit.
class TextLines {
public:
    /// @param device open, with random access; read from its beginning
    TextLines(QIODevice& device, const ErrorSource& source);

    /// The next line, valid until the next call; nothing at the end. Throws an Error Unreadable, or Unsuitable for a
    /// line of more than 1 MiB.
    std::optional<std::string_view> next();

    /// Back to the first line.
    void rewind();

    /// The number of line ends; rewinds.
    std::int64_t countLineEnds();

    std::int64_t line() const { return line_; } ///< number of the line that was read last, from 1
    /// Where the line that was read last is.
    ErrorPlace place() const;
    const ErrorSource& source() const { return source_; }

private:
    void refill();
    qint64 read(char* data, qint64 size);

    QIODevice& device_;
    const ErrorSource& source_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0; ///< of what was not handed out yet
    std::size_t searched_ = 0; ///< no line end before
    std::size_t end_ = 0;
    bool isAtEnd_ = false;
    std::int64_t line_ = 0;
    std::int64_t lineByte_ = 0; ///< where the line that was read last begins
    std::int64_t nextByte_ = 0;
    std::unique_ptr<QStringDecoder> decoder_; ///< of UTF-16
};

} // namespace KxInspect::detail
