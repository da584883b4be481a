// The records of a file by their places: heads without points, and points straight into where they stay.
#pragma once

#include <KxMath/KxPoints.h>

#include <QtCore/QtGlobal>

#include <array>
#include <limits>
#include <optional>
#include <span>
#include <string>

namespace kxpython {

/// What stands before the points of a record.
struct RecordHead {
    int count = 0; ///< of points
    bool hasPosition = true; ///< a profile record; a 2-D cloud section has none

    qint64 bytes() const { return hasPosition ? 7 : 3; }
    /// Of the whole record.
    qint64 size() const { return bytes() + qint64(sizeof(KxMath::KxPointXY)) * count; }
    bool operator==(const RecordHead& other) const = default;
};

/// A record that is to be read.
struct RecordTarget {
    RecordHead head; ///< as it is expected
    KxMath::KxPointXY* points = nullptr; ///< room for as many
    float z = std::numeric_limits<float>::quiet_NaN(); ///< read: its position, NaN for a section
};

/// So many records are read by one call of the system.
inline constexpr std::size_t kLongestRun = 512;

/// A file of records that may change or shrink while it is used: reading then finds fewer records. It is not mapped,
/// where memory would vanish with the end of the file. Several threads may read at once.
class RecordFile {
public:
    explicit RecordFile(const std::string& path);
    ~RecordFile();
    RecordFile(const RecordFile&) = delete;
    RecordFile& operator=(const RecordFile&) = delete;

    /// The size when it was opened; 0 where there is no such file, and for folders and devices.
    qint64 size() const { return size_; }

    /// Reads bytes from a place on. @return how many there are
    qint64 read(qint64 place, std::span<char> bytes) const;

    /// Reads successive records, at most kLongestRun. @return how many of them, from the first one on, are whole and as
    /// expected
    std::size_t readRun(qint64 place, std::span<RecordTarget> records) const;

private:
    int file_ = -1;
    qint64 size_ = 0;
};

/// Reads heads from places that mostly rise: those of short records many at once.
class HeadReader {
public:
    explicit HeadReader(const RecordFile& file) : file_(file) {}

    /// The head at a place, and the position behind it.
    struct Found {
        RecordHead head;
        float z;
    };
    std::optional<Found> at(qint64 place);

private:
    const RecordFile& file_;
    std::array<char, 1 << 14> window_ = {}; ///< what is in the file from begin_ to end_
    qint64 begin_ = 0;
    qint64 end_ = 0;
    qint64 last_ = 0;
};

/// Walks over the heads of a whole file. `visit` is called with the place and the head of each record.
/// @return false unless the file consists of records from its beginning to its end
template <typename Visit>
bool walkRecords(const RecordFile& file, Visit visit) {
    HeadReader heads(file);
    qint64 place = 0;
    while (place < file.size()) {
        const std::optional<HeadReader::Found> found = heads.at(place);
        if (!found || place + found->head.size() > file.size()) {
            return false;
        }
        visit(place, found->head);
        place += found->head.size();
    }
    return place > 0;
}

} // namespace kxpython
