// Reading the recording of one sensor, record by record.
#include <KxInspect/Recording.h>

#include "inspect/base/points.h"
#include "inspect/recordings/recordStream.h"

namespace KxInspect {

struct RecordingReader::Parts {
    detail::RecordStream stream;
    KxMath::KxProfileZ profile;
};

RecordingReader::RecordingReader(const std::string& path)
    : parts_(new Parts{detail::RecordStream({"recording", path, {}}), {}}) {}

RecordingReader::RecordingReader(RecordingReader&&) noexcept = default;
RecordingReader& RecordingReader::operator=(RecordingReader&&) noexcept = default;
RecordingReader::~RecordingReader() = default;

bool RecordingReader::next(Record& record) {
    const std::int64_t at = position();
    const KxMath::KxRecordKind kind = parts_->stream.next(parts_->profile);
    if (kind == KxMath::KxNoRecord) {
        return false;
    }
    record.number = parts_->stream.records();
    record.byte = at;
    record.kind = kind == KxMath::KxProfileRecord ? RecordKind::ProfileRecord : RecordKind::CloudSection;
    detail::assign(parts_->profile.points, record.profile.points);
    record.profile.z = parts_->profile.z;
    return true;
}

std::int64_t RecordingReader::position() const {
    return parts_->stream.position();
}

std::int64_t RecordingReader::size() const {
    return parts_->stream.size();
}

} // namespace KxInspect
