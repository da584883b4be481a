// Profiles from files of several kinds.
#include <KxInspect/ProfileFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/base/points.h"
#include "inspect/formats/gaugeText.h"
#include "inspect/formats/openFile.h"
#include "inspect/recordings/recordStream.h"

namespace KxInspect {

namespace {

constexpr qint64 kMaxTextSize = 256 << 20; ///< larger texts are refused

void checkColumns(const Columns& columns) {
    if (columns.x < 0 || columns.y < 0) {
        detail::fail(ErrorKind::BadArgument, {{}, {}, "columns"}, QStringLiteral("columns are counted from 0"));
    }
}

bool isRecording(const QByteArray& head) {
    return head.startsWith(static_cast<char>(KxMath::KxSectionXY)) ||
           head.startsWith(static_cast<char>(KxMath::KxProfileRecord));
}

/// The profile in a text; CSV has a semicolon in its first line.
std::vector<Point> parseText(const QString& path, const QByteArray& text, const Columns& columns) {
    if (!text.left(text.indexOf('\n')).contains(';')) {
        return detail::parseGaugeText(text, columns);
    }
    KxMath::KxProfile profile;
    profile.readFromCSVFile(path, columns.x, columns.y);
    return detail::toVector(profile.points);
}

Profile toProfile(const KxMath::KxProfileZ& record) {
    return {detail::toVector(record.points), record.z};
}

} // namespace

Profile readProfile(const std::string& path, const Columns& columns) {
    checkColumns(columns);
    const ErrorSource source{{}, path, {}};
    QFile file(detail::toQt(path));
    detail::openForReading(file, source);
    if (file.size() > kMaxTextSize) {
        detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("is too large for a profile"));
    }
    Profile profile;
    if (isRecording(file.peek(1))) {
        KxMath::KxProfileZ record;
        detail::RecordStream(source).next(record);
        profile = toProfile(record);
    } else {
        profile.points = parseText(file.fileName(), detail::readAll(file, source), columns);
    }
    if (profile.points.empty()) {
        detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("holds no points"));
    }
    return profile;
}

std::vector<Profile> readProfiles(const std::string& path, const Columns& columns) {
    const ErrorSource source{{}, path, {}};
    QFile file(detail::toQt(path));
    detail::openForReading(file, source);
    if (!isRecording(file.peek(1))) {
        return {readProfile(path, columns)};
    }
    std::vector<Profile> profiles;
    detail::RecordStream stream(source);
    KxMath::KxProfileZ record;
    while (stream.next(record) != KxMath::KxNoRecord) {
        profiles.push_back(toProfile(record));
    }
    return profiles;
}

} // namespace KxInspect
