// Files that appear whole or not at all.
#pragma once

#include "Error.h"
#include "Export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace KxInspect {

/// A file that is written beside the one that it replaces, and takes its place once it is whole. Until then an older
/// file stays as it is; its permissions pass on to the new one. A link stays and its target is replaced. Devices, pipes
/// and open files (/dev/stdout) are not replaced: what was written is copied into them.
///
/// A process that is killed leaves a file whose name begins with "incomplete-".
class KXINSPECT_EXPORT AtomicFile {
public:
    /// Makes an empty file to write to. Throws an Error Unwritable when that is not possible.
    /// @param target the file to replace, and its role in messages
    explicit AtomicFile(ErrorSource target);
    /// Removes what was written unless commit() has put it in place.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Where to write: the file exists, is empty, and may be opened with truncation. Close it before commit().
    const std::string& path() const noexcept { return path_; }

    /// Puts the file in place. Throws an Error Unwritable when it does not hold `size` bytes, as on a full disk, or
    /// cannot be put in place; the older file then stays.
    void commit(std::uint64_t size);

    /// Throws an Error Unwritable about the target: "could not be written: WHY".
    [[noreturn]] void fail(const std::string& why) const;

private:
    void replace();
    void copyInto() const;

    ErrorSource target_;
    std::string place_; ///< the target without links
    std::string path_;
    bool isReplaced_ = true; ///< false for what is written into
    int openFile_ = -1; ///< that is written into
};

/// Writes a whole file as AtomicFile does. Throws an Error Unwritable; the older file then stays.
KXINSPECT_EXPORT void writeWholeFile(const ErrorSource& target, std::string_view content);

} // namespace KxInspect
