// The scan that a height map is made from.
#include "inspect/scan/scanFile.h"

#include "tools/kxmath/console/commandError.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kxtool {

namespace {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxProfileZ;
using KxMath::KxProfileZSet;

// The first byte of the two kinds of records.
constexpr unsigned char kCloudSection = 2;
constexpr unsigned char kProfileRecord = 5;

constexpr double kMostSlices = 1e6;

[[noreturn]] void failSet(const GridOptions& options, const QString& why) {
    throw CommandError{BadInput, QStringLiteral("'%1' %2").arg(options.set, why)};
}

/// The kind of a file, told by its first byte.
unsigned char openSet(const GridOptions& options, QFile& file) {
    const QFileInfo info(options.set);
    if (!info.exists()) {
        failSet(options, QStringLiteral("does not exist"));
    }
    if (!info.isFile()) {
        failSet(options, QStringLiteral("is not a file"));
    }
    if (!file.open(QIODevice::ReadOnly)) {
        failSet(options, QStringLiteral("cannot be read: ") + file.errorString());
    }
    const QByteArray first = file.peek(1);
    if (first.isEmpty()) {
        failSet(options, QStringLiteral("is empty"));
    }
    const unsigned char kind = static_cast<unsigned char>(first[0]);
    if (kind != kCloudSection && kind != kProfileRecord) {
        failSet(options, QStringLiteral("is neither a profile set nor a file of 2-D clouds: it is damaged at byte 0, "
                                        "which is 0x%1 in place of 5 or 2")
                             .arg(kind, 2, 16, QLatin1Char('0')));
    }
    return kind;
}

/// Reads all records of the kind, since the reader of sets ends at a damaged one without a word.
/// @return for each record whether it has points
std::vector<bool> checkRecords(const GridOptions& options, QFile& file, unsigned char kind, Progress& progress) {
    progress.step(QStringLiteral("checking %1").arg(options.set));
    KxMath::KxPointCloud<KxPointXY> section;
    KxProfileZ record;
    std::vector<bool> hasPoints;
    while (file.pos() < file.size()) {
        const int points = kind == kCloudSection ? section.readFromFile(file) : record.readFromFile(file);
        if (points < 0) {
            const qint64 at = file.pos();
            const unsigned char first = static_cast<unsigned char>(file.read(1).append('\0')[0]);
            const QString why = first == kind
                                    ? QStringLiteral("the record that begins there is cut short by the end of the file")
                                    : QStringLiteral("it is 0x%1 in place of %2")
                                          .arg(first, 2, 16, QLatin1Char('0'))
                                          .arg(static_cast<int>(kind));
            failSet(options, QStringLiteral("is damaged at byte %1, after %2 whole records: %3")
                                 .arg(QString::number(at), QString::number(hasPoints.size()), why));
        }
        hasPoints.push_back(points > 0);
        progress.part(file.pos(), file.size());
    }
    return hasPoints;
}

/// Puts empty profiles where the reader of sets left out records without points, so that each record keeps its row.
void restoreEmptyProfiles(const std::vector<bool>& hasPoints, KxProfileZSet& set) {
    QList<KxProfileZ> profiles;
    qsizetype next = 0;
    for (const bool isThere : hasPoints) {
        profiles.append(isThere && next < set.profiles.size() ? set.profiles.at(next++) : KxProfileZ());
    }
    set.profiles.swap(profiles);
}

/// Drops the points that have no place or no height: a NaN would spread to the cells about it and hinder the sorting.
void dropMissingPoints(Scan& scan) {
    const auto isMissing = [](const KxPointXY& p) { return !std::isfinite(p.x) || !std::isfinite(p.y); };
    for (KxProfileZ& profile : scan.set.profiles) {
        profile.points.removeIf(isMissing);
    }
}

/// Makes profiles one pitch apart from those at their true positions.
void slice(const GridOptions& options, Scan& scan) {
    KxMath::KxPointCloud<KxPointXYZ> cloud;
    scan.set.toPointCloud(cloud);
    cloud.calcRange();
    if (!(static_cast<double>(cloud.size_z()) / static_cast<double>(options.step) < kMostSlices)) {
        throw CommandError{WrongUse, QStringLiteral("--step %1 cuts the scan, which is %2 mm long, into more than %3 "
                                                    "slices")
                                         .arg(options.step)
                                         .arg(cloud.size_z())
                                         .arg(kMostSlices, 0, 'f', 0)};
    }
    scan.set.calcFromPointCloud(cloud, options.step);
}

} // namespace

void readScan(const GridOptions& options, Progress& progress, Scan& scan) {
    QFile file(options.set);
    const unsigned char kind = openSet(options, file);
    const std::vector<bool> hasPoints = checkRecords(options, file, kind, progress);
    scan.records = static_cast<int>(hasPoints.size());
    scan.emptyRecords = static_cast<int>(std::count(hasPoints.begin(), hasPoints.end(), false));
    progress.step(QStringLiteral("reading %1").arg(options.set));
    const float dz = options.dz.value_or(options.step);
    if (kind == kCloudSection) {
        scan.set.readFromFile(options.set, options.z0, dz);
    } else {
        scan.set.readFromFile(options.set);
    }
    restoreEmptyProfiles(hasPoints, scan.set);
    scan.set.setZ(options.z0, dz);
    dropMissingPoints(scan);
    const auto isEmpty = [](const KxProfileZ& profile) { return profile.points.isEmpty(); };
    if (std::all_of(scan.set.profiles.cbegin(), scan.set.profiles.cend(), isEmpty)) {
        failSet(options, QStringLiteral("holds no points, %1 records are empty").arg(scan.records));
    }
    if (dz != options.step) {
        slice(options, scan);
    }
    scan.set.calcRange();
}

} // namespace kxtool
