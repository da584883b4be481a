// The exception of this library.
#pragma once

#include "Export.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace KxInspect {

/// The kinds of failures that a caller may want to distinguish.
enum class ErrorKind {
    NotFound, ///< there is no such file
    Unreadable, ///< a file cannot be opened or read
    Damaged, ///< the content of a file breaks the rules of its format
    Unsuitable, ///< a whole file that does not hold what is needed: another kind, no points, a key that is missing
    BadArgument, ///< an argument of the call is out of range
    NoResult, ///< the data give no result
    Unwritable, ///< an output cannot be written
};

/// What an error is about.
struct ErrorSource {
    std::string role = {}; ///< what the file is to the caller, "recording" or "settings"; may be empty
    std::string file = {}; ///< the path that the caller gave; empty when it is about none
    std::string key = {}; ///< of settings or arguments; empty when it is about none
};

/// Where in a file an error is, as far as it is known.
struct ErrorPlace {
    std::optional<std::int64_t> byte = {}; ///< from 0
    std::optional<std::int64_t> record = {}; ///< from 1
    std::optional<std::int64_t> line = {}; ///< from 1
    std::optional<std::int64_t> column = {}; ///< from 1
};

/// A failure. What was not measured is no failure: results hold it as an absent value with its reason.
class KXINSPECT_EXPORT Error : public std::runtime_error {
public:
    /// @param reason the predicate of a sentence about the source, with the place in words: "is damaged at byte 12:
    /// ..."
    Error(ErrorKind kind, ErrorSource source, std::string reason, ErrorPlace place = {});
    Error(const Error&);
    Error& operator=(const Error&);
    ~Error() override;

    ErrorKind kind() const noexcept { return kind_; }
    const ErrorSource& source() const noexcept { return source_; }
    const ErrorPlace& place() const noexcept { return place_; }
    const std::string& reason() const noexcept { return reason_; }
    // what() is the whole sentence in UTF-8: ROLE 'FILE' REASON, with %XX for each byte of FILE that is not UTF-8

private:
    ErrorKind kind_;
    ErrorSource source_;
    std::string reason_;
    ErrorPlace place_;
};

} // namespace KxInspect
