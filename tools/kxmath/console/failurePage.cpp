// The report of a command whose data give no result.
#include "tools/kxmath/console/failurePage.h"

#include "report/elements/fileNames.h"
#include "report/failure/failurePage.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/PointFile.h>

#include <QtCore/QFileInfo>

#include <algorithm>

namespace kxtool {

namespace {

constexpr std::size_t kMostPoints = 20000; ///< of a picture
constexpr std::int64_t kMostProfiles = 8; ///< each is read from the beginning of the file on

/// Adds the points of a set, at most so many, evenly spread.
void addPoints(const KxInspect::PointSet& set, std::size_t most, kxreport::RawFile& raw) {
    const std::size_t stride = set.points.size() / most + 1;
    for (std::size_t i = 0; i < set.points.size(); i += stride) {
        raw.points.push_back({set.points[i].x, set.points[i].y});
    }
}

void readSomePoints(const std::string& path, const KxInspect::TextOptions& text, kxreport::RawFile& raw) {
    if (const std::optional<KxInspect::FileKind> kind = raw.contents->kind) {
        addPoints(KxInspect::readPoints(path, *kind, text), kMostPoints, raw);
        return;
    }
    for (const KxInspect::PartCount& part : raw.contents->parts) {
        raw.records += part.count;
    }
    raw.profiles = std::min(raw.records, kMostProfiles);
    for (std::int64_t i = 0; i < raw.profiles; ++i) {
        addPoints(KxInspect::readRecord(path, 1 + i * raw.records / raw.profiles), kMostPoints / kMostProfiles, raw);
    }
}

kxreport::RawFile readRaw(const QString& file, const KxInspect::TextOptions& text) {
    kxreport::RawFile raw;
    const std::string path = toBytes(file);
    raw.path = printable(file).toStdString();
    if (const KxInspect::detail::QtPath where(path);
        QFileInfo::exists(where.text()) && !QFileInfo(where.text()).isFile()) {
        raw.whyNot = QStringLiteral("'%1' is no file that can be read twice").arg(printable(file));
        return raw;
    }
    try {
        raw.contents = KxInspect::readFileContents(path, {}, text);
        if (raw.contents->damage) {
            raw.whyNot = QString::fromUtf8(raw.contents->damage->what());
        }
        if (raw.contents->points > 0) {
            readSomePoints(path, text, raw);
        }
    } catch (const KxInspect::Error& error) {
        raw.whyNot = QString::fromUtf8(error.what());
    }
    return raw;
}

} // namespace

bool isAboutData(const KxInspect::Error& error) {
    return error.kind() != KxInspect::ErrorKind::BadArgument && error.kind() != KxInspect::ErrorKind::Unwritable;
}

bool isAboutData(const CommandError& error) {
    return error.code == BadInput || error.code == NoResult;
}

void FailurePage::write(const QString& reason) const {
    if (!report.isWanted()) {
        return;
    }
    QStringList different = files;
    different.removeDuplicates();
    std::vector<kxreport::RawFile> raw;
    for (const QString& file : std::as_const(different)) {
        raw.push_back(readRaw(file, text));
    }
    const QString shown = kxreport::withBareName(printable(reason));
    report.write(kxreport::failurePage(title, shown + QLatin1Char('.'), raw, report.origin()));
}

} // namespace kxtool
