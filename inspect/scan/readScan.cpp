// Reading scans.
#include <KxInspect/Scan.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/base/points.h"
#include "inspect/recordings/recordStream.h"
#include "inspect/scan/arguments.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

void checkPlacement(const ScanPlacement& placement) {
    detail::checkFinite("firstZ", placement.firstZ);
    detail::checkAbove0("distance", placement.distance);
}

/// Throws an Error for a file that does not begin with a record of either kind.
void checkFirstByte(const ErrorSource& source) {
    const detail::QtPath where(source.file);
    QFile file(where.text());
    char first = 0;
    if (!QFileInfo(where.text()).isFile() || !file.open(QIODevice::ReadOnly) || !file.getChar(&first)) {
        return; // the stream reports the reason
    }
    if (first != KxMath::KxSectionXY && first != KxMath::KxProfileRecord) {
        detail::fail(ErrorKind::Unsuitable, source,
                     QStringLiteral("is neither a profile set nor a file of 2-D clouds: it is damaged at byte 0, which "
                                    "is 0x%1 instead of 5 or 2")
                         .arg(static_cast<unsigned char>(first), 2, 16, QLatin1Char('0')),
                     {0, 1, {}, {}});
    }
}

const char* nameOf(KxMath::KxRecordKind kind) {
    return kind == KxMath::KxSectionXY ? "2-D cloud section" : "profile record";
}

/// Reads all records of a file, which must be of one kind.
void readRecords(const ErrorSource& source, const Progress& progress, Scan& scan) {
    const std::string step = "reading " + detail::shown(source.file);
    detail::RecordStream stream(source);
    KxMath::KxProfileZ profile;
    KxMath::KxRecordKind kind = KxMath::KxNoRecord;
    for (qint64 at = 0;; at = stream.position()) {
        const KxMath::KxRecordKind next = stream.next(profile);
        if (next == KxMath::KxNoRecord) {
            return;
        }
        kind = kind == KxMath::KxNoRecord ? next : kind;
        if (next != kind) {
            detail::fail(ErrorKind::Unsuitable, source,
                         QStringLiteral("changes its kind at byte %1, after %2 records: a %3 begins there, the records "
                                        "before are of the kind %4")
                             .arg(at)
                             .arg(stream.records() - 1)
                             .arg(QLatin1String(nameOf(next)), QLatin1String(nameOf(kind))),
                         {at, stream.records(), {}, {}});
        }
        scan.emptyRecords += profile.points.isEmpty() ? 1 : 0;
        profile.points.removeIf([](const KxMath::KxPointXY& p) { return !std::isfinite(p.x) || !std::isfinite(p.y); });
        scan.profiles.push_back({detail::toVector(profile.points)});
        if (progress) {
            progress(step, static_cast<double>(stream.position()) / static_cast<double>(stream.size()));
        }
    }
}

void place(const ScanPlacement& placement, Scan& scan) {
    KxMath::KxProfileZSet positions;
    positions.profiles.resize(static_cast<qsizetype>(scan.profiles.size()));
    positions.setZ(placement.firstZ, placement.distance);
    for (std::size_t i = 0; i < scan.profiles.size(); ++i) {
        scan.profiles[i].z = std::as_const(positions.profiles)[static_cast<qsizetype>(i)].z;
    }
    scan.distance = placement.distance;
}

} // namespace

Scan readScan(const std::string& path, const ScanPlacement& placement, const Progress& progress) {
    checkPlacement(placement);
    const ErrorSource source{{}, path, {}};
    checkFirstByte(source);
    Scan scan;
    readRecords(source, progress, scan);
    const auto isEmpty = [](const Profile& profile) { return profile.points.empty(); };
    if (std::all_of(scan.profiles.begin(), scan.profiles.end(), isEmpty)) {
        detail::fail(ErrorKind::Unsuitable, source,
                     QStringLiteral("holds no points, %1 records are empty").arg(scan.profiles.size()));
    }
    place(placement, scan);
    return scan;
}

} // namespace KxInspect
