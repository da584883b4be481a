// The recordings below a folder, by station, time and sensor.
#pragma once

#include "Export.h"

#include <cstdint>
#include <string>
#include <vector>

namespace KxInspect {

/// Where station, time and sensor stand in the path of a recording below the folder of all recordings, with one
/// placeholder for each:
/// - {station}: a text that PassLabels::station may hold; at most once, the station is unknown without it
/// - {time}: a time with a zone, ISO 8601 in a form that a file name can hold: 20261121T081500Z, 20261121T0915+0100,
///   2026-11-21T08:15:00.5Z, and 2026-11-21T08-15-00Z for where names hold no colons; once
/// - {prefix}: any text, at most once
/// - {serial}: the serial number of the sensor; once, in the name of the file, which ends in "_{serial}.bin" and has no
///   other '_'
/// Everything else stands for itself. No placeholder holds a '/' or nothing at all. Names that begin with '.' or
/// "incomplete-" are of files that are not finished: no placeholder at the beginning of a name matches them.
inline constexpr const char* kDefaultLayout = "{station}/{time}/{prefix}_{serial}.bin";

/// A recording below the folder.
struct FoundRecording {
    std::string path; ///< the folder, as the caller gave it, and what is below
    int serial = 0; ///< serial number of the sensor
    std::int64_t bytes = 0; ///< its size
    /// When its content or its status last changed, by the clock of its file system (st_ctime), ns since 1970.
    std::int64_t changed = 0;
};

/// The recordings of one pass.
struct RecordingGroup {
    std::string station; ///< UTF-8; empty when the layout has none
    std::string time; ///< as PassLabels::time: "2026-11-21T08:15:00Z"
    std::vector<FoundRecording> recordings; ///< by serial number, then by path; two may have the same number
};

/// What is below the folder and in no group.
struct SkippedPath {
    std::string path; ///< as FoundRecording::path
    std::string reason; ///< the predicate of a sentence, UTF-8: "is a link, which is not followed"
    bool isUnreadable = false; ///< a folder or file that could not be looked at: recordings may be missing
};

struct FoundRecordings {
    std::vector<RecordingGroup> groups; ///< by station, then by the text of their time
    std::vector<SkippedPath> skipped; ///< by path
};

/// Finds the recordings below a folder. The content of files is not read. Links below it are not followed, so that no
/// recording is found outside or twice. Memory follows what is there. What appears or goes away meanwhile may be found
/// or not.
/// Throws an Error for a layout that is wrong (BadArgument), and when the folder itself cannot be read.
KXINSPECT_EXPORT FoundRecordings findRecordings(const std::string& folder, const std::string& layout = kDefaultLayout);

/// How far a recording is written.
struct RecordingEnd {
    std::int64_t records = 0; ///< whole ones
    std::int64_t wholeBytes = 0; ///< where the last of them ends
    std::int64_t bytes = 0; ///< the size of the file

    /// Nothing stands behind the last whole record, of which there is one.
    bool isWhole() const { return records > 0 && wholeBytes == bytes; }
};

/// Looks whether a recording ends with a whole record, by the number of points in the head of each.
/// Throws an Error when it cannot be read, and when something stands in it that no record begins with.
/// @param path see KxInspect.h
KXINSPECT_EXPORT RecordingEnd recordingEnd(const std::string& path);

} // namespace KxInspect
