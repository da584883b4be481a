// Text line by line, without a copy of each.
#include "io/lineReader.h"

#include <algorithm>

namespace KxMath::detail {

namespace {

std::string_view withoutReturn(std::string_view line) {
    return !line.empty() && line.back() == '\r' ? line.substr(0, line.size() - 1) : line;
}

} // namespace

std::optional<std::string_view> LineReader::next() {
    for (;;) {
        const qsizetype end = buffer_.indexOf('\n', searched_);
        if (end >= 0) {
            const std::string_view line(buffer_.constData() + begin_, static_cast<std::size_t>(end - begin_));
            begin_ = searched_ = end + 1;
            return withoutReturn(line);
        }
        searched_ = buffer_.size();
        if (!refill()) {
            break;
        }
    }
    if (begin_ == buffer_.size()) {
        return {};
    }
    const std::string_view line(buffer_.constData() + begin_, static_cast<std::size_t>(buffer_.size() - begin_));
    begin_ = searched_ = buffer_.size();
    return withoutReturn(line);
}

/// Refills the buffer behind the unread bytes. @return false at the end of the file
bool LineReader::refill() {
    if (isEnded_) { // else the rest of a line whose beginning was given out would become a line of its own
        return false;
    }
    constexpr qsizetype kBlock = 65536;
    buffer_.remove(0, begin_);
    searched_ -= begin_;
    begin_ = 0;
    const qsizetype kept = buffer_.size();
    // The buffer doubles, so that a long line is not copied again for every block.
    buffer_.resize(kept + std::max(kBlock, kept));
    const qint64 arrived = std::max<qint64>(device_.read(buffer_.data() + kept, buffer_.size() - kept), 0);
    buffer_.resize(kept + static_cast<qsizetype>(arrived));
    char* const data = buffer_.data();
    std::transform(data + kept, data + buffer_.size(), data + kept, [&](char c) {
        return c == replaced_ ? replacement_ : c;
    }); // written in any case: vectors instead of branches
    if (arrived > 0) {
        return true;
    }
    isEnded_ = true;
    if (!device_.atEnd()) { // the read failed: half a line may end within a number
        buffer_.resize(0);
        searched_ = 0;
    }
    return false;
}

} // namespace KxMath::detail
