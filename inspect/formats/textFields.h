// The fields of a line.
#pragma once

#include "inspect/formats/textNumber.h"

#include <algorithm>
#include <optional>

namespace KxInspect::detail {

/// Goes through the fields of a line, without the blanks around them. A separator ' ' stands for any number of blanks
/// and tabs.
class Fields {
public:
    Fields(std::string_view line, char separator)
        : left_(separator == ' ' ? trimmed(line) : line), separator_(separator),
          isEnd_(separator == ' ' && left_.empty()) {}

    /// The next field, nothing at the end.
    std::optional<std::string_view> next() {
        if (isEnd_) {
            return {};
        }
        const auto isSeparator = [this](char c) { return c == separator_ || (separator_ == ' ' && c == '\t'); };
        const std::size_t end =
            static_cast<std::size_t>(std::find_if(left_.begin(), left_.end(), isSeparator) - left_.begin());
        const std::string_view field = left_.substr(0, end);
        isEnd_ = end == left_.size();
        left_.remove_prefix(isEnd_ ? end : end + 1);
        if (separator_ == ' ') {
            left_ = trimmed(left_);
            return field;
        }
        return trimmed(field);
    }

    std::string_view rest() const { return left_; } ///< behind the fields so far

private:
    std::string_view left_;
    char separator_;
    bool isEnd_;
};

} // namespace KxInspect::detail
