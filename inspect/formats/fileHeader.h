// The text at the head of a file, line by line.
#pragma once

#include "inspect/base/error.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <optional>

namespace KxInspect::detail {

/// Reads a header line by line and keeps track of the position.
class FileHeader {
public:
    FileHeader(const ErrorSource& source, const QByteArray& content) : source_(source), content_(content) {}

    /// The words of the next line; empty when no complete line is left.
    std::optional<QList<QByteArray>> nextLine() {
        const qsizetype end = content_.indexOf('\n', next_);
        if (end < 0) {
            return {};
        }
        const QByteArray line = content_.mid(next_, end - next_);
        begin_ = next_;
        next_ = end + 1;
        ++line_;
        return line.simplified().split(' ');
    }

    /// Throws an Error about the last line read.
    [[noreturn]] void fail(ErrorKind kind, const QString& reason) const {
        detail::fail(kind, source_, QStringLiteral("%1, in line %2").arg(reason).arg(line_), {begin_, {}, line_, {}});
    }
    /// Throws an Error about the header as a whole.
    [[noreturn]] void failWhole(ErrorKind kind, const QString& reason) const {
        detail::fail(kind, source_, reason, {next_, {}, {}, {}});
    }

    const ErrorSource& source() const { return source_; }
    const QByteArray& content() const { return content_; }
    qsizetype end() const { return next_; } ///< the byte after the last line read
    int lines() const { return line_; } ///< read so far

private:
    const ErrorSource& source_;
    const QByteArray& content_;
    qsizetype begin_ = 0;
    qsizetype next_ = 0;
    int line_ = 0;
};

} // namespace KxInspect::detail
