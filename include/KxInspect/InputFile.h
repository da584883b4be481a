// A file that a result was made from.
#pragma once

#include "Export.h"
#include "Progress.h"

#include <cstdint>
#include <string>

namespace KxInspect {

/// A file as it was when it was read.
struct InputFile {
    std::string name = {}; ///< without its folder, UTF-8
    std::int64_t bytes = 0;
    std::string sha256 = {}; ///< 64 hexadecimal digits in lower case, of the bytes that were read
};

/// Reads a file from its beginning to its end for its size and hash. Throws an Error NotFound, Unreadable, or Unsuitable for
/// what is no file.
/// @param path see KxInspect.h
KXINSPECT_EXPORT InputFile identifyFile(const std::string& path, const Progress& progress = {});

} // namespace KxInspect
