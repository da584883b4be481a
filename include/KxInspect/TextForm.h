// How texts with columns of numbers are read.
#pragma once

#include "Export.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace KxInspect {

/// What a caller knows about a text of columns; the rest is found in the text.
struct TextOptions {
    /// Where x, y and, of points in space, z stand in a line, counted from 0. Empty: in the first columns; a profile
    /// then needs 2 columns, points need 2, 3 or 6.
    std::vector<int> columns = {};
    /// Between the columns: ';', ',', '\t', or ' ' for any number of blanks and tabs.
    std::optional<char> separator = {};
    std::optional<char> decimalSign = {}; ///< '.' or ','
};

/// How a text of columns was read.
struct TextForm {
    char separator = ' '; ///< as in TextOptions
    char decimalSign = '.'; ///< '.' also where no number has a fraction
    std::int64_t titleLines = 0; ///< lines before the first point, empty ones included: titles, comments, a header
    int columns = 0; ///< of each line, remarks left out
    std::int64_t remarks = 0; ///< points of a gauge file with text behind their columns
};

/// What of a reading its user has to know: that commas are decimal signs, and what stood behind the columns and was left
/// out. The predicate of a sentence about the file; empty where there is nothing of that.
KXINSPECT_EXPORT std::string readingNote(const TextForm& form);

} // namespace KxInspect
