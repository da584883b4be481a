// Reading and writing the kinds of point files.
#include "inspect/formats/pointFile.h"

#include "inspect/formats/viewerFormats.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QtEndian>

#include <limits>

namespace kxtool {

namespace {

using KxMath::KxPointCloud;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxPointXYZRGB;
using KxMath::KxProfile;
using KxMath::KxProfileZ;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr qsizetype kMaxProfilePoints = 65535; ///< the count of a profile has 16 bits

[[noreturn]] void fail(const QString& message) {
    throw FormatError{message};
}

void openForReading(QFile& file) {
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("cannot be read: %1").arg(file.errorString()));
    }
}

/// The library does not tell a file that cannot be opened from one that is empty.
void readableOrFail(const QString& path) {
    QFile file(path);
    openForReading(file);
}

void append(PointData& data, const KxPointXY& p, float z) {
    data.points.append({p.x, p.y, z, 0});
}

PointData readCloud(const QString& path) {
    QFile file(path);
    openForReading(file);
    PointData data;
    KxPointCloud<KxPointXY> flat;
    KxPointCloud<KxPointXYZ> spatial;
    KxPointCloud<KxPointXYZRGB> coloured;
    if (flat.readFromFile(file) >= 0) {
        for (const KxPointXY& p : std::as_const(flat.points)) {
            append(data, p, kNaN);
        }
    } else if (spatial.readFromFile(file) >= 0) {
        data.hasZ = true;
        for (const KxPointXYZ& p : std::as_const(spatial.points)) {
            data.points.append({p.x, p.y, p.z, 0});
        }
    } else if (coloured.readFromFile(file) >= 0) {
        data.hasZ = true;
        data.hasColour = true;
        data.points = coloured.points;
    } else {
        fail(QStringLiteral("holds no whole cloud section"));
    }
    if (!file.atEnd()) {
        fail(QStringLiteral("goes on behind its cloud section, at byte %1; kxmath info tells what is in it")
                 .arg(file.pos()));
    }
    return data;
}

PointData readProfiles(const QString& path) {
    QFile file(path);
    openForReading(file);
    PointData data;
    data.hasZ = true;
    while (!file.atEnd()) {
        KxProfileZ profile;
        if (profile.readFromFile(file) < 0) {
            fail(QStringLiteral("is damaged: no whole profile record begins at byte %1").arg(file.pos()));
        }
        data.profileStarts.append(data.points.size());
        for (const KxPointXY& p : std::as_const(profile.points)) {
            append(data, p, profile.z);
        }
    }
    return data;
}

PointData readCsv(const QString& path) {
    KxProfile profile;
    if (profile.readFromCSVFile(path, 0, 1) == 0) {
        fail(QStringLiteral("holds no points"));
    }
    PointData data;
    for (const KxPointXY& p : std::as_const(profile.points)) {
        append(data, p, kNaN);
    }
    return data;
}

PointData readHeadlessXyz(const QByteArray& content) {
    constexpr qsizetype kRecordSize = 16;
    if (content.size() % kRecordSize != 0) {
        fail(QStringLiteral("has %1 bytes, which is no multiple of 16").arg(content.size()));
    }
    PointData data;
    data.hasZ = true;
    for (qsizetype at = 0; at < content.size(); at += kRecordSize) {
        float xyz[3];
        qFromLittleEndian<float>(content.constData() + at, 3, xyz);
        data.points.append({xyz[0], xyz[1], xyz[2], 0});
    }
    return data;
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    openForReading(file);
    return file.readAll();
}

void checkWritten(bool isWritten) {
    if (!isWritten) {
        fail(QStringLiteral("could not be written"));
    }
}

KxPointCloud<KxPointXYZ> withoutColours(const PointData& data) {
    KxPointCloud<KxPointXYZ> cloud;
    for (const KxPointXYZRGB& p : data.points) {
        cloud.points.append({p.x, p.y, p.z});
    }
    return cloud;
}

/// The x and y of the points from `begin` up to, not including, `end`.
QList<KxPointXY> inPlane(const PointData& data, qsizetype begin, qsizetype end) {
    QList<KxPointXY> points;
    for (qsizetype i = begin; i < end; ++i) {
        points.append({data.points[i].x, data.points[i].y});
    }
    return points;
}

void writeCloud(const QString& path, const PointData& data) {
    if (data.hasColour) {
        KxPointCloud<KxPointXYZRGB> cloud;
        cloud.points = data.points;
        checkWritten(cloud.writeToFile(path));
    } else if (data.hasZ) {
        checkWritten(withoutColours(data).writeToFile(path));
    } else {
        KxPointCloud<KxPointXY> cloud;
        cloud.points = inPlane(data, 0, data.points.size());
        if (cloud.points.size() > kMaxProfilePoints) {
            fail(QStringLiteral("cannot hold more than 65535 points of a 2-D cloud"));
        }
        checkWritten(cloud.writeToFile(path));
    }
}

/// Where profiles begin: as the file said, else wherever z changes.
QList<qsizetype> profileStarts(const PointData& data) {
    if (!data.profileStarts.isEmpty()) {
        return data.profileStarts;
    }
    QList<qsizetype> starts;
    for (qsizetype i = 0; i < data.points.size(); ++i) {
        const bool isFirst = i == 0;
        if (isFirst || (data.hasZ && data.points[i].z != data.points[i - 1].z)) {
            starts.append(i);
        }
    }
    return starts;
}

void writeProfiles(const QString& path, const PointData& data) {
    QFile file(path);
    checkWritten(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    const QList<qsizetype> starts = profileStarts(data);
    for (qsizetype i = 0; i < starts.size(); ++i) {
        const qsizetype end = i + 1 < starts.size() ? starts[i + 1] : data.points.size();
        if (end - starts[i] > kMaxProfilePoints) {
            fail(QStringLiteral("cannot hold a profile of %1 points, 65535 is the most").arg(end - starts[i]));
        }
        KxProfileZ profile(starts[i] < end ? data.points[starts[i]].z : kNaN);
        profile.points = inPlane(data, starts[i], end);
        checkWritten(profile.writeToFile(file));
    }
    checkWritten(file.flush());
}

void writeCsv(const QString& path, const PointData& data) {
    if (data.hasZ && profileStarts(data).size() > 1) {
        fail(QStringLiteral("holds one profile, the data have several"));
    }
    KxProfile profile;
    profile.points = inPlane(data, 0, data.points.size());
    checkWritten(profile.writeToCSVFile(path));
}

void writeHeadlessXyz(const QString& path, const PointData& data) {
    checkWritten(withoutColours(data).compat_writeToXYZFile(path));
}

void writeBytes(const QString& path, const QByteArray& bytes) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) { // a device or pipe is written into, not replaced
        QFile device(path);
        checkWritten(device.open(QIODevice::WriteOnly) && device.write(bytes) == bytes.size() && device.flush());
        return;
    }
    QSaveFile file(path);
    checkWritten(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit());
}

} // namespace

PointData readPointFile(const QString& path, Format format) {
    readableOrFail(path);
    switch (format) {
    case Format::Cloud:
        return readCloud(path);
    case Format::Profiles:
        return readProfiles(path);
    case Format::Csv:
        return readCsv(path);
    case Format::HeadlessXyz:
        return readHeadlessXyz(readAll(path));
    case Format::Xyz:
        return parseXyz(readAll(path));
    case Format::Ply:
        return parsePly(readAll(path));
    case Format::Pcd:
        break;
    }
    return parsePcd(readAll(path));
}

void writePointFile(const QString& path, Format format, const PointData& data) {
    switch (format) {
    case Format::Cloud:
        return writeCloud(path, data);
    case Format::Profiles:
        return writeProfiles(path, data);
    case Format::Csv:
        return writeCsv(path, data);
    case Format::HeadlessXyz:
        return writeHeadlessXyz(path, data);
    case Format::Xyz:
        return writeBytes(path, formatXyz(data));
    case Format::Ply:
        return writeBytes(path, formatPly(data));
    case Format::Pcd:
        return writeBytes(path, formatPcd(data));
    }
}

} // namespace kxtool
