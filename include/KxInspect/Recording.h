// Reading the recording of one sensor, record by record.
#pragma once

#include "Export.h"
#include "Profile.h"

#include <cstdint>
#include <memory>
#include <string>

namespace KxInspect {

/// What the name of a recording says: PREFIX_SERIAL.bin.
struct RecordingName {
    std::string file; ///< without its folder; ".bin" is added where it is missing
    std::string base; ///< `file` without ".bin": the folder of its wheel files
    int serial = 0; ///< serial number of the sensor, from the first '_' on; 0 when no number stands there
};

/// @param path see KxInspect.h; the file need not be there
KXINSPECT_EXPORT RecordingName recordingName(const std::string& path);

enum class RecordKind {
    CloudSection, ///< a 2-D cloud section, without a position
    ProfileRecord, ///< a profile with its position
};

/// A record of the file.
struct Record {
    int number = 0; ///< from 1 on
    std::int64_t byte = 0; ///< its offset in the file
    RecordKind kind = RecordKind::ProfileRecord;
    Profile profile; ///< in the order of the sensor; empty for a record without points
};

/// Walks over the records of a recording. Memory follows the longest record.
///
///     RecordingReader reader("train_101.bin");
///     Record record;
///     while (reader.next(record)) { ... }
class KXINSPECT_EXPORT RecordingReader {
public:
    /// Opens a recording. Throws an Error when there is no such file, or when it cannot be read or is empty.
    /// @param path see KxInspect.h
    explicit RecordingReader(const std::string& path);
    RecordingReader(RecordingReader&&) noexcept;
    RecordingReader& operator=(RecordingReader&&) noexcept;
    ~RecordingReader();

    /// Reads the next record into `record`, whose memory is used again. Throws an Error with the byte and the record
    /// where the file is damaged, cut short or cannot be read on.
    /// @return false at the end of the recording; `record` is then unchanged
    bool next(Record& record);

    /// How many bytes of the file have been read.
    std::int64_t position() const;
    /// The size of the file in bytes.
    std::int64_t size() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace KxInspect
