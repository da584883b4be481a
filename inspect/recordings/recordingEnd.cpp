// How far a recording is written.
#include <KxInspect/RecordingGroups.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/recordings/brokenRecord.h"

#include <KxMath/KxRecording.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QtEndian>

#include <algorithm>
#include <array>

namespace KxInspect {

namespace {

constexpr qint64 kCountEnd = 3; // a marker and the number of points
constexpr qint64 kPointBytes = 8;
constexpr qint64 kPositionBytes = 4; // of profile records

using Head = std::array<char, kCountEnd>;

bool isRecordKind(char marker) {
    return marker == static_cast<char>(KxMath::KxSectionXY) || marker == static_cast<char>(KxMath::KxProfileRecord);
}

qint64 recordBytes(const Head& head) {
    const bool hasPosition = head[0] == static_cast<char>(KxMath::KxProfileRecord);
    return kCountEnd + (hasPosition ? kPositionBytes : 0) + kPointBytes * qFromLittleEndian<quint16>(head.data() + 1);
}

} // namespace

RecordingEnd recordingEnd(const std::string& path) {
    const ErrorSource source{"recording", path, {}};
    const detail::QtPath where(path);
    QFile file(where.text());
    if (!QFileInfo::exists(where.text())) {
        detail::fail(ErrorKind::NotFound, source, QStringLiteral("does not exist"));
    }
    if (!QFileInfo(where.text()).isFile()) {
        detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("is not a file"));
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) { // only heads are read
        detail::fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be read: ") + file.errorString());
    }
    RecordingEnd end;
    end.bytes = file.size();
    if (char byte = 0; end.bytes == 0 && file.read(&byte, 1) != 0) { // a size that cannot be found is 0, too
        detail::fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be read: its size is not known"));
    }
    while (end.wholeBytes < end.bytes) {
        Head head{};
        const qint64 wanted = std::min<qint64>(kCountEnd, end.bytes - end.wholeBytes);
        const bool isRead = file.seek(end.wholeBytes) && file.read(head.data(), wanted) == wanted;
        if (!isRead || !isRecordKind(head[0])) {
            file.seek(end.wholeBytes);
            throw detail::brokenRecord(file, source, end.records, "\2\5");
        }
        const qint64 next = end.wholeBytes + recordBytes(head);
        if (wanted < kCountEnd || next > end.bytes) {
            break;
        }
        end.wholeBytes = next;
        ++end.records;
    }
    return end;
}

} // namespace KxInspect
