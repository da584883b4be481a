// The contents of a file.
#include <KxInspect/FileContents.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/formats/contentKind.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/pointFile.h"
#include "inspect/formats/sections.h"
#include "inspect/recordings/brokenRecord.h"

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

using Spacings = std::vector<float>;

void count(FileContents& contents, PartKind kind) {
    const auto found = std::find_if(contents.parts.begin(), contents.parts.end(),
                                    [&](const PartCount& part) { return part.kind == kind; });
    if (found == contents.parts.end()) {
        contents.parts.push_back({kind, 1});
    } else {
        ++found->count;
    }
}

/// Adds the points of a part. `hasZ`: they have their own z.
void addPoints(FileContents& contents, const std::vector<Point3>& points, bool hasZ, Spacings& spacings) {
    contents.points += static_cast<std::int64_t>(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point3& p = points[i];
        contents.missing += std::isnan(p.x) || std::isnan(p.y) || (hasZ && std::isnan(p.z)) ? 1 : 0;
        contents.x.include(p.x);
        contents.y.include(p.y);
        contents.z.include(p.z);
        const float spacing = i > 0 ? std::abs(p.x - points[i - 1].x) : 0.0f;
        if (std::isfinite(spacing) && spacing > 0.0f) {
            spacings.push_back(spacing);
        }
    }
}

PartKind partKind(KxMath::KxRecordKind kind) {
    switch (kind) {
    case KxMath::KxSectionXY:
        return PartKind::CloudSection2D;
    case KxMath::KxSectionXYZ:
        return PartKind::CloudSection3D;
    case KxMath::KxSectionXYZRGB:
        return PartKind::CloudSectionColours;
    default:
        return PartKind::ProfileRecord;
    }
}

/// Reads sections and records of any kind up to the end or the first byte where none begins.
void readSections(QFile& file, const ErrorSource& source, const Progress& progress, FileContents& contents,
                  Spacings& spacings) {
    const std::string step = "reading " + detail::shown(source.file);
    const double size = static_cast<double>(file.size()); // once: each time the system is asked
    while (!file.atEnd()) {
        PointSet part;
        const KxMath::KxRecordKind kind = detail::readSection(file, part);
        if (kind == KxMath::KxNoRecord) {
            std::int64_t records = 0;
            for (const PartCount& counted : contents.parts) {
                records += counted.count;
            }
            contents.damage = detail::brokenRecord(file, source, records, "\2\3\4\5");
            return;
        }
        count(contents, partKind(kind));
        addPoints(contents, part.points, kind == KxMath::KxSectionXYZ || kind == KxMath::KxSectionXYZRGB, spacings);
        if (progress) {
            progress(step, static_cast<double>(file.pos()) / size);
        }
    }
}

void readWholeFile(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options,
                   FileContents& contents, Spacings& spacings) {
    contents.kind = kind;
    try {
        const PointSet set = detail::readPoints(file, source, kind, options);
        contents.text = set.text;
        spacings.reserve(set.points.size());
        count(contents, PartKind::WholeFile);
        addPoints(contents, set.points, set.hasZ, spacings);
    } catch (const Error& error) {
        if (error.kind() == ErrorKind::BadArgument) {
            throw;
        }
        contents.damage = error;
    }
}

bool isWholeFile(std::optional<FileKind> kind) {
    return kind && *kind != FileKind::Cloud && *kind != FileKind::Profiles;
}

} // namespace

FileContents readFileContents(const std::string& path, const Progress& progress, const TextOptions& options) {
    const ErrorSource source{{}, path, {}};
    const detail::QtPath where(path);
    QFile file(where.text());
    detail::openForReading(file, source);
    FileContents contents;
    Spacings spacings;
    const bool isEmpty = file.atEnd();
    if (const std::optional<FileKind> kind = detail::kindOfFile(file, path); isWholeFile(kind) && !isEmpty) {
        readWholeFile(file, source, *kind, options, contents, spacings);
    } else {
        readSections(file, source, progress, contents, spacings);
    }
    contents.spacing = detail::median(std::move(spacings));
    return contents;
}

} // namespace KxInspect
