// Profiles from files of several kinds.
#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/base/points.h"
#include "inspect/formats/contentKind.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/pointFile.h"
#include "inspect/formats/textFile.h"
#include "inspect/recordings/brokenRecord.h"

#include <KxMath/KxRecording.h>

namespace KxInspect {

namespace {

constexpr qint64 kMaxTextSize = 256 << 20; ///< larger texts are refused

/// Whether it begins with a 2-D cloud section or a profile record.
bool isRecording(const QByteArray& head) {
    return head.startsWith(static_cast<char>(KxMath::KxSectionXY)) ||
           head.startsWith(static_cast<char>(KxMath::KxProfileRecord));
}

bool isText(std::optional<FileKind> kind) {
    return !kind || kind == FileKind::Csv || kind == FileKind::Xyz || kind == FileKind::Gauge;
}

/// x and y of the points of a file.
Profile flatten(const PointSet& set) {
    Profile profile;
    profile.points.reserve(set.points.size());
    for (const Point3& p : set.points) {
        profile.points.push_back({p.x, p.y});
    }
    return profile;
}

/// The record at the position of the file, behind `before` others.
Profile readRecord(QFile& file, const ErrorSource& source, std::size_t before) {
    KxMath::KxProfileZ record;
    if (KxMath::KxReadRecord(file, record) == KxMath::KxNoRecord) {
        throw detail::brokenRecord(file, source, static_cast<std::int64_t>(before), "\2\5");
    }
    return {detail::toVector(record.points), record.z};
}

/// readProfile() of an open file.
Profile readOne(QFile& file, const ErrorSource& source, const TextOptions& options, std::optional<TextForm>* form) {
    if (file.size() > kMaxTextSize) {
        detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("is too large for a profile"));
    }
    const std::optional<FileKind> kind = detail::kindOfFile(file, source.file);
    std::optional<TextForm> textForm;
    Profile profile;
    if (isText(kind)) {
        profile = detail::readTextProfile(file, source, kind.value_or(FileKind::Xyz), options, textForm);
    } else if (isRecording(file.peek(1)) && kind != FileKind::Xyzf) {
        profile = readRecord(file, source, 0);
    } else {
        profile = flatten(detail::readPoints(file, source, *kind));
    }
    if (form != nullptr) {
        *form = textForm;
    }
    if (profile.points.empty()) {
        detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("holds no points"));
    }
    return profile;
}

} // namespace

Profile readProfile(const std::string& path, const TextOptions& options, std::optional<TextForm>* form) {
    const ErrorSource source{{}, path, {}};
    const detail::QtPath where(path);
    QFile file(where.text());
    detail::openForReading(file, source);
    return readOne(file, source, options, form);
}

std::vector<Profile> readProfiles(const std::string& path, const TextOptions& options, std::optional<TextForm>* form) {
    const ErrorSource source{{}, path, {}};
    const detail::QtPath where(path);
    QFile file(where.text());
    detail::openForReading(file, source);
    const QByteArray head = file.peek(1);
    if (head.isEmpty()) {
        detail::checkWhole(file, source);
    }
    if (!isRecording(head) || kindByFileName(path) == FileKind::Xyzf) {
        return {readOne(file, source, options, form)};
    }
    if (form != nullptr) {
        form->reset();
    }
    std::vector<Profile> profiles;
    while (!file.peek(1).isEmpty()) {
        profiles.push_back(readRecord(file, source, profiles.size()));
    }
    detail::checkWhole(file, source);
    return profiles;
}

} // namespace KxInspect
