// Text line by line, without a copy of each.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <optional>
#include <string_view>

namespace KxMath::detail {

/// The lines of a file, or other device, from its current position. A line ends with a line feed, or a carriage return
/// and a line feed; a carriage return at the end of the file is no part of the last line either. Memory follows the
/// longest line.
class LineReader {
public:
    LineReader(QIODevice& device, char replaced, char replacement)
        : device_(device), replaced_(replaced), replacement_(replacement) {}

    /// The next line without its line feed; nothing at the end of the file. Valid until the next call. After a read that brings
    /// nothing the text has ended, also when the device could be read again; where that is not the end of the file, the
    /// line that it cuts is left out.
    std::optional<std::string_view> next();

private:
    bool refill();

    QIODevice& device_;
    const char replaced_;
    const char replacement_;
    QByteArray buffer_;
    qsizetype begin_ = 0; ///< of the bytes that were not returned yet
    qsizetype searched_ = 0; ///< from `begin_` up to here there is no line feed
    bool isEnded_ = false; ///< a read brought nothing
};

} // namespace KxMath::detail
