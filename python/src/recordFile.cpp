// The records of a file by their places.
#include "recordFile.h"

#include <KxMath/KxRecording.h>

#include <QtCore/QtEndian>

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

std::optional<RecordFile::Found> RecordFile::headAt(qint64 place) const {
    HeadBytes bytes = {};
    const iovec part = {bytes.data(), bytes.size()};
    const qint64 arrived = readParts(file_, &part, 1, place);
    const RecordHead head = headOf(bytes);
    if (head.count < 0 || arrived < head.bytes()) {
        return std::nullopt;
    }
    return Found{head, positionOf(bytes, head)};
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

} // namespace kxpython
