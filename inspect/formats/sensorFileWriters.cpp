// Writing the kinds of point files that sensors write.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/sensorFiles.h"

#include <KxInspect/AtomicFile.h>
#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>

#include <cerrno>
#include <cstring>
#include <optional>

namespace KxInspect::detail {

namespace {

using KxMath::KxPointCloud;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxPointXYZRGB;

constexpr std::size_t kMaxProfilePoints = 65535; ///< the count of a profile has 16 bits

// Sizes in bytes.
constexpr qint64 kShortHead = 3; ///< of a 2-D cloud section: a mark and a count of 16 bits
constexpr qint64 kLongHead = 5; ///< of other cloud sections: a count of 32 bits
constexpr qint64 kRecordHead = 7; ///< of a profile record: the head of a section and z
constexpr qint64 kFlatPoint = 8;
constexpr qint64 kSpacePoint = 12;
constexpr qint64 kColouredPoint = 16;

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

/// Writes a file by `write(path)`, which returns how many bytes it has written, nothing on failure.
template <typename Write>
void writeBeside(const ErrorSource& source, Write write) {
    AtomicFile file(source);
    const QtPath where(file.path());
    errno = 0;
    const std::optional<qint64> size = write(where.text());
    if (!size) {
        file.fail(errno != 0 ? std::strerror(errno) : "the file is incomplete");
    }
    file.commit(static_cast<std::uint64_t>(*size));
}

/// A cloud section: its head and points of `pointSize` bytes.
template <typename Cloud>
void writeSection(const ErrorSource& source, Cloud& cloud, qint64 headSize, qint64 pointSize) {
    writeBeside(source, [&](const QString& path) -> std::optional<qint64> {
        if (!cloud.writeToFile(path)) {
            return {};
        }
        return headSize + pointSize * cloud.points.size();
    });
}

/// Throws an Error Unwritable when a profile is too long. Called before the file is replaced.
void checkLengths(const ErrorSource& source, const std::vector<std::size_t>& starts, std::size_t end) {
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const std::size_t size = (i + 1 < starts.size() ? starts[i + 1] : end) - starts[i];
        if (size > kMaxProfilePoints) {
            fail(ErrorKind::Unwritable, source,
                 QStringLiteral("cannot hold a profile of %1 points; the maximum is 65535").arg(size));
        }
    }
}

/// A 2-D cloud section for each profile.
void writeFlatSections(const ErrorSource& source, const PointSet& set) {
    const std::vector<std::size_t> starts = set.profileStarts.empty() ? std::vector<std::size_t>(1) : set.profileStarts;
    checkLengths(source, starts, set.points.size());
    writeBeside(source, [&](const QString& path) -> std::optional<qint64> {
        QFile file(path);
        bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        for (std::size_t i = 0; isWritten && i < starts.size(); ++i) {
            KxPointCloud<KxPointXY> cloud;
            cloud.points = inPlane(set, starts[i], i + 1 < starts.size() ? starts[i + 1] : set.points.size());
            isWritten = cloud.writeToFile(file);
        }
        if (!isWritten || !file.flush()) {
            return {};
        }
        return static_cast<qint64>(starts.size()) * kShortHead + static_cast<qint64>(set.points.size()) * kFlatPoint;
    });
}

} // namespace

void writeCloudFile(const ErrorSource& source, const PointSet& set) {
    if (set.hasColours) {
        KxPointCloud<KxPointXYZRGB> cloud;
        cloud.points.reserve(static_cast<qsizetype>(set.points.size()));
        for (std::size_t i = 0; i < set.points.size(); ++i) {
            const Point3& p = set.points[i];
            cloud.points.append({p.x, p.y, p.z, set.colours[i]});
        }
        writeSection(source, cloud, kLongHead, kColouredPoint);
    } else if (set.hasZ) {
        KxPointCloud<KxPointXYZ> cloud;
        copySpace(set, cloud);
        writeSection(source, cloud, kLongHead, kSpacePoint);
    } else {
        writeFlatSections(source, set);
    }
}

void writeProfileRecords(const ErrorSource& source, const PointSet& set) {
    const std::vector<std::size_t> starts = profileStarts(set);
    const auto endOf = [&](std::size_t i) { return i + 1 < starts.size() ? starts[i + 1] : set.points.size(); };
    checkLengths(source, starts, set.points.size());
    writeBeside(source, [&](const QString& path) -> std::optional<qint64> {
        QFile file(path);
        bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        for (std::size_t i = 0; isWritten && i < starts.size(); ++i) {
            const float unknown = std::numeric_limits<float>::quiet_NaN();
            KxMath::KxProfileZ profile(starts[i] < endOf(i) ? set.points[starts[i]].z : unknown);
            profile.points = inPlane(set, starts[i], endOf(i));
            isWritten = profile.writeToFile(file);
        }
        if (!isWritten || !file.flush()) {
            return {};
        }
        return static_cast<qint64>(starts.size()) * kRecordHead +
               static_cast<qint64>(set.points.size() - (starts.empty() ? 0 : starts.front())) * kFlatPoint;
    });
}

void writeCsvFile(const ErrorSource& source, const PointSet& set) {
    if (profileStarts(set).size() > 1) {
        fail(ErrorKind::Unwritable, source,
             QStringLiteral("can hold one profile, the data have %1").arg(profileStarts(set).size()));
    }
    KxMath::KxProfile profile;
    profile.points = inPlane(set, 0, set.points.size());
    writeBeside(source, [&](const QString& path) -> std::optional<qint64> {
        QFile file(path);
        if (!profile.writeToCSVFile(path) || !file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QByteArray text = file.readAll(); // the profile does not report a full disk: each point is a line
        return text.count('\n') == profile.points.size() ? std::optional(text.size()) : std::nullopt;
    });
}

void writeXyzfFile(const ErrorSource& source, const PointSet& set) {
    constexpr qint64 kPoint = 16; // x, y, z, 0
    KxPointCloud<KxPointXYZ> cloud;
    copySpace(set, cloud);
    writeBeside(source, [&](const QString& path) -> std::optional<qint64> {
        if (!cloud.compat_writeToXYZFile(path)) {
            return {};
        }
        return kPoint * cloud.points.size();
    });
}

} // namespace KxInspect::detail
