// A file that a result was made from.
#pragma once

#include <cstdint>
#include <string>

namespace KxInspect {

/// A file as it was when it was read.
struct InputFile {
    std::string name = {}; ///< without its folder, UTF-8
    std::int64_t bytes = 0;
    std::string sha256 = {}; ///< 64 hexadecimal digits in lower case, of the bytes that were read
};

} // namespace KxInspect
