// Which bytes of a text are UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace KxInspect::detail {

/// The length of the character of UTF-8 that begins at `at`, 1 to 4; 0 where none does (RFC 3629, 2003).
inline std::size_t utf8Length(std::string_view text, std::size_t at) {
    const auto byteAt = [&](std::size_t i) {
        return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0u;
    };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    // The second byte excludes longer forms of shorter characters, surrogates, and what is beyond U+10FFFF.
    const unsigned least = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    const unsigned most = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    if (first < 0xc2 || first > 0xf4 || byteAt(1) < least || byteAt(1) > most) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (byteAt(i) < 0x80 || byteAt(i) > 0xbf) {
            return 0;
        }
    }
    return length;
}

inline bool isUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = utf8Length(text, at);
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

} // namespace KxInspect::detail
