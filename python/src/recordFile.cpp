// The records of a file by their places.
#include "recordFile.h"

#include <KxMath/KxRecording.h>

#include <QtCore/QtEndian>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace kxpython {

namespace {

/// The longest head: marker, count and position.
using HeadBytes = std::array<char, 7>;
constexpr std::size_t kCountOffset = 1;
constexpr std::size_t kPositionOffset = 3;

/// A count of -1 for a marker of something else.
RecordHead headOf(const HeadBytes& bytes) {
    const bool hasPosition = bytes[0] == KxMath::KxProfileRecord;
    if (!hasPosition && bytes[0] != KxMath::KxSectionXY) {
        return {-1, false};
    }
    return {qFromLittleEndian<quint16>(bytes.data() + kCountOffset), hasPosition};
}

float positionOf(const HeadBytes& bytes, const RecordHead& head) {
    return head.hasPosition ? qFromLittleEndian<float>(bytes.data() + kPositionOffset)
                            : std::numeric_limits<float>::quiet_NaN();
}

/// As preadv(), again when a signal comes before the first byte.
qint64 readParts(int file, const iovec* parts, int count, qint64 place) {
    ssize_t arrived = -1;
    do {
        arrived = ::preadv(file, parts, count, place);
    } while (arrived < 0 && errno == EINTR);
    return arrived;
}

} // namespace

RecordFile::RecordFile(const std::string& path)
    : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) { // a pipe without a writer does not wait
    struct stat status = {};
    if (file_ >= 0 && ::fstat(file_, &status) == 0 && S_ISREG(status.st_mode)) {
        size_ = status.st_size;
    }
}

RecordFile::~RecordFile() {
    if (file_ >= 0) {
        ::close(file_);
    }
}

qint64 RecordFile::read(qint64 place, std::span<char> bytes) const {
    const iovec part = {bytes.data(), bytes.size()};
    return std::max<qint64>(0, readParts(file_, &part, 1, place));
}

std::size_t RecordFile::readRun(qint64 place, std::span<RecordTarget> records) const {
    std::array<HeadBytes, kLongestRun> heads;
    std::array<iovec, 2 * kLongestRun> parts;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const RecordHead& head = records[i].head;
        parts[2 * i] = {heads[i].data(), std::size_t(head.bytes())};
        parts[2 * i + 1] = {records[i].points, std::size_t(head.size() - head.bytes())};
    }
    qint64 left = readParts(file_, parts.data(), int(2 * records.size()), place);
    for (std::size_t i = 0; i < records.size(); ++i) {
        RecordTarget& record = records[i];
        if (left < record.head.size() || headOf(heads[i]) != record.head) {
            return i;
        }
        record.z = positionOf(heads[i], record.head);
        qFromLittleEndian<float>(record.points, 2 * qsizetype(record.head.count), record.points);
        left -= record.head.size();
    }
    return records.size();
}

std::optional<HeadReader::Found> HeadReader::at(qint64 place) {
    constexpr qint64 kShortStep = 4096; // two or three of them take as long as reading what is between
    const qint64 step = place - last_;
    last_ = place;
    const qint64 longest = sizeof(HeadBytes);
    if (place < begin_ || place + longest > end_) {
        const bool isAhead = step > 0 && step < kShortStep;
        begin_ = place;
        end_ = place + file_.read(place, std::span(window_).first(isAhead ? window_.size() : std::size_t(longest)));
    }
    HeadBytes bytes = {};
    const qint64 arrived = std::min(longest, end_ - place);
    std::copy_n(window_.data() + (place - begin_), arrived, bytes.data());
    const RecordHead head = headOf(bytes);
    if (head.count < 0 || arrived < head.bytes()) {
        return std::nullopt;
    }
    return Found{head, positionOf(bytes, head)};
}

} // namespace kxpython
