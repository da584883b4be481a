// Writing the kinds of point files that sensors write.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/sensorFiles.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace KxInspect::detail {

namespace {

using KxMath::KxPointCloud;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxPointXYZRGB;

constexpr std::size_t kMaxProfilePoints = 65535; ///< the count of a profile has 16 bits

void copySpace(const PointSet& set, KxPointCloud<KxPointXYZ>& cloud) {
    cloud.points.reserve(static_cast<qsizetype>(set.points.size()));
    for (const Point3& p : set.points) {
        cloud.points.append({p.x, p.y, p.z});
    }
}

/// The x and y of the points from `begin` up to, not including, `end`.
QList<KxPointXY> inPlane(const PointSet& set, std::size_t begin, std::size_t end) {
    QList<KxPointXY> points;
    points.reserve(static_cast<qsizetype>(end - begin));
    for (std::size_t i = begin; i < end; ++i) {
        points.append({set.points[i].x, set.points[i].y});
    }
    return points;
}

/// Where profiles begin: at the given starts, otherwise wherever z changes.
std::vector<std::size_t> profileStarts(const PointSet& set) {
    if (!set.profileStarts.empty()) {
        return set.profileStarts;
    }
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        if (i == 0 || (set.hasZ && set.points[i].z != set.points[i - 1].z)) {
            starts.push_back(i);
        }
    }
    return starts;
}

} // namespace

void checkWritten(bool isWritten, const ErrorSource& source) {
    if (!isWritten) {
        fail(ErrorKind::Unwritable, source, QStringLiteral("could not be written"));
    }
}

void writeCloudFile(const ErrorSource& source, const PointSet& set) {
    const QString path = toQt(source.file);
    if (set.hasColours) {
        KxPointCloud<KxPointXYZRGB> cloud;
        cloud.points.reserve(static_cast<qsizetype>(set.points.size()));
        for (std::size_t i = 0; i < set.points.size(); ++i) {
            const Point3& p = set.points[i];
            cloud.points.append({p.x, p.y, p.z, set.colours[i]});
        }
        checkWritten(cloud.writeToFile(path), source);
    } else if (set.hasZ) {
        KxPointCloud<KxPointXYZ> cloud;
        copySpace(set, cloud);
        checkWritten(cloud.writeToFile(path), source);
    } else {
        if (set.points.size() > kMaxProfilePoints) {
            fail(ErrorKind::Unwritable, source, QStringLiteral("cannot hold more than 65535 points of a 2-D cloud"));
        }
        KxPointCloud<KxPointXY> cloud;
        cloud.points = inPlane(set, 0, set.points.size());
        checkWritten(cloud.writeToFile(path), source);
    }
}

void writeProfileRecords(const ErrorSource& source, const PointSet& set) {
    const std::vector<std::size_t> starts = profileStarts(set);
    const auto endOf = [&](std::size_t i) { return i + 1 < starts.size() ? starts[i + 1] : set.points.size(); };
    for (std::size_t i = 0; i < starts.size(); ++i) { // before the file is replaced
        if (endOf(i) - starts[i] > kMaxProfilePoints) {
            fail(ErrorKind::Unwritable, source,
                 QStringLiteral("cannot hold a profile of %1 points; the maximum is 65535").arg(endOf(i) - starts[i]));
        }
    }
    QFile file(toQt(source.file));
    checkWritten(file.open(QIODevice::WriteOnly | QIODevice::Truncate), source);
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const float unknown = std::numeric_limits<float>::quiet_NaN();
        KxMath::KxProfileZ profile(starts[i] < endOf(i) ? set.points[starts[i]].z : unknown);
        profile.points = inPlane(set, starts[i], endOf(i));
        checkWritten(profile.writeToFile(file), source);
    }
    checkWritten(file.flush(), source);
}

void writeCsvFile(const ErrorSource& source, const PointSet& set) {
    if (set.hasZ && profileStarts(set).size() > 1) {
        fail(ErrorKind::Unwritable, source, QStringLiteral("holds one profile, the data have several"));
    }
    const QString path = toQt(source.file);
    KxMath::KxProfile profile;
    profile.points = inPlane(set, 0, set.points.size());
    checkWritten(profile.writeToCSVFile(path), source);
    if (QFileInfo(path).isFile()) { // the profile does not report a full disk
        checkWritten(readAll(source).count('\n') == profile.points.size(), source);
    }
}

void writeXyzfFile(const ErrorSource& source, const PointSet& set) {
    KxPointCloud<KxPointXYZ> cloud;
    copySpace(set, cloud);
    checkWritten(cloud.compat_writeToXYZFile(toQt(source.file)), source);
}

} // namespace KxInspect::detail
