// The profile that kxmath profile works on.
#include "tools/kxmath/profile/profileInput.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/ProfileFile.h>

namespace kxtool {

namespace {

using KxInspect::FileContents;
using KxInspect::FileKind;
using KxInspect::PartKind;

[[noreturn]] void failFor(const QString& file, const QString& reason) {
    throw CommandError{BadInput, QStringLiteral("'%1' %2").arg(file, reason)};
}

/// How many profiles a file of sections and records holds. Throws a CommandError when one is in space.
std::int64_t countProfiles(const QString& file, const FileContents& contents) {
    std::int64_t count = 0;
    for (const KxInspect::PartCount& part : contents.parts) {
        if (part.kind != PartKind::CloudSection2D && part.kind != PartKind::ProfileRecord) {
            failFor(file, QStringLiteral("holds a cloud in space, no profile"));
        }
        count += part.count;
    }
    return count;
}

KxInspect::Profile readRecord(const std::string& path, int number) {
    const KxInspect::PointSet set = KxInspect::readRecord(path, number);
    KxInspect::Profile profile;
    profile.points.reserve(set.points.size());
    for (const KxInspect::Point3& p : set.points) {
        profile.points.push_back({p.x, p.y});
    }
    if (set.hasZ && !set.points.empty()) {
        profile.z = set.points.front().z;
    }
    return profile;
}

bool hasColumnsOfSpace(const FileContents& contents) {
    const FileKind kind = contents.kind.value();
    return kind != FileKind::Csv && kind != FileKind::Xyz && kind != FileKind::Gauge;
}

} // namespace

ProfileInput readProfileInput(const ProfileArguments& arguments, const KxInspect::Progress& progress) {
    const std::string path = toBytes(arguments.file);
    const FileContents contents = KxInspect::readFileContents(path, progress, arguments.text);
    if (contents.damage) {
        throw KxInspect::Error(*contents.damage);
    }
    if (contents.kind) {
        if (arguments.record) {
            throw CommandError{
                WrongUse, QStringLiteral("--record is for scans and recordings, '%1' is none").arg(arguments.file)};
        }
        if (hasColumnsOfSpace(contents) && !contents.z.isEmpty() && contents.z.min < contents.z.max) {
            failFor(arguments.file, QStringLiteral("holds points in space, no profile"));
        }
        std::optional<KxInspect::TextForm> form;
        ProfileInput input{KxInspect::readProfile(path, arguments.text, &form), {}};
        input.note = form ? QString::fromStdString(readingNote(*form)) : QString();
        return input;
    }
    const std::int64_t count = countProfiles(arguments.file, contents);
    if (count == 0) {
        failFor(arguments.file, QStringLiteral("is empty"));
    }
    if (count > 1 && !arguments.record) {
        failFor(arguments.file, QStringLiteral("holds %1 profiles, --record N takes one").arg(count));
    }
    if (arguments.record.value_or(1) > count) {
        throw CommandError{WrongUse,
                           QStringLiteral("--record %1: '%2' has %3 records")
                               .arg(QString::number(*arguments.record), arguments.file, QString::number(count))};
    }
    return {readRecord(path, arguments.record.value_or(1)), {}};
}

} // namespace kxtool
