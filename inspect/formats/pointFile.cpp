// Reading and writing the kinds of point files.
#include <KxInspect/AtomicFile.h>
#include <KxInspect/HeightMapFile.h>
#include <KxInspect/PointFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/pointFile.h"
#include "inspect/formats/sensorFiles.h"
#include "inspect/formats/textFile.h"
#include "inspect/formats/viewerFormats.h"

#include <algorithm>
#include <cmath>

namespace KxInspect {

namespace {

void checkPoints(const ErrorSource& source, const PointSet& set) {
    if (set.hasColours && set.colours.size() != set.points.size()) {
        detail::fail(ErrorKind::BadArgument, source,
                     QStringLiteral("needs a colour for each of %1 points, got %2")
                         .arg(set.points.size())
                         .arg(set.colours.size()));
    }
    const std::vector<std::size_t>& starts = set.profileStarts;
    const bool isWhole = starts.empty() || (starts.front() == 0 && starts.back() <= set.points.size());
    if (!isWhole || !std::is_sorted(starts.begin(), starts.end())) {
        detail::fail(ErrorKind::BadArgument, source,
                     QStringLiteral("needs profile starts that rise from 0 to the number of points"));
    }
}

bool hasOneZ(const PointSet& set) {
    return std::all_of(set.points.begin(), set.points.end(), [&](const Point3& p) {
        return p.z == set.points.front().z || (std::isnan(p.z) && std::isnan(set.points.front().z));
    });
}

/// What the kind cannot hold, empty when it can hold the points.
QString reasonAgainst(FileKind kind, const PointSet& set) {
    const std::size_t profiles = set.profileStarts.size();
    const bool keepsProfiles = kind == FileKind::Cloud || kind == FileKind::Profiles || kind == FileKind::Table;
    switch (kind) {
    case FileKind::Stl:
    case FileKind::Vti:
    case FileKind::Gsf:
    case FileKind::Sdf:
        return QStringLiteral("cannot hold points, but a height map");
    case FileKind::Gauge:
    case FileKind::Csv:
        if (profiles > 1) {
            return QStringLiteral("can hold one profile, the data have %1").arg(profiles);
        }
        if (kind == FileKind::Gauge && set.hasZ && !hasOneZ(set)) {
            return QStringLiteral("can hold one profile, not points with several z");
        }
        break;
    default:
        break;
    }
    if (!keepsProfiles && !set.hasZ && profiles > 1) {
        return QStringLiteral("cannot hold %1 profiles without positions: they would lie upon each other")
            .arg(profiles);
    }
    const bool losesColours = kind == FileKind::Gauge || kind == FileKind::Npy;
    return set.hasColours && losesColours ? QStringLiteral("cannot hold colours") : QString();
}

bool hasBlockHeader(const std::string& path) {
    const QString name = detail::toQt(path).toLower();
    return name.endsWith(QLatin1String(".prw")) || name.endsWith(QLatin1String(".prr"));
}

void writeBytes(const ErrorSource& source, const QByteArray& bytes) {
    writeWholeFile(source, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

} // namespace

PointSet detail::readPoints(QFile& file, const ErrorSource& source, FileKind kind, const TextOptions& options) {
    switch (kind) {
    case FileKind::Cloud:
        return readCloudFile(file, source);
    case FileKind::Profiles:
        return readProfileRecords(file, source);
    case FileKind::Xyzf:
        return readXyzfFile(file, source);
    case FileKind::Ply:
        return parsePly(source, readAll(file, source));
    case FileKind::Pcd:
        return parsePcd(source, readAll(file, source));
    case FileKind::Table:
        return parseTable(source, readAll(file, source));
    case FileKind::Npy:
        return parseNpyPoints(source, readAll(file, source));
    case FileKind::Vtp:
        return parseVtp(source, readAll(file, source));
    case FileKind::Stl:
        return parseStl(source, readAll(file, source));
    case FileKind::Vti:
        return pointsOf(parseVti(source, readAll(file, source)));
    case FileKind::Gsf:
        return pointsOf(parseGsf(source, readAll(file, source)));
    case FileKind::Sdf:
        return pointsOf(parseSdf(source, readAll(file, source)));
    case FileKind::Csv:
    case FileKind::Xyz:
    case FileKind::Gauge:
        break;
    }
    return readTextPoints(file, source, kind, options);
}

PointSet readPoints(const std::string& path, FileKind kind, const TextOptions& options) {
    const ErrorSource source{{}, path, {}};
    const detail::QtPath where(path);
    QFile file(where.text());
    detail::openForReading(file, source);
    return detail::readPoints(file, source, kind, options);
}

PointSet readRecord(const std::string& path, std::int64_t number) {
    if (number < 1) {
        detail::fail(ErrorKind::BadArgument, {{}, path, "record"}, QStringLiteral("needs a number of at least 1"));
    }
    const ErrorSource source{{}, path, {}};
    const detail::QtPath where(path);
    QFile file(where.text());
    detail::openForReading(file, source);
    return detail::readNumberedRecord(file, source, number);
}

std::string partsLeftOut(FileKind kind, const PointSet& points) {
    const bool isOlder =
        kind == FileKind::Profiles || kind == FileKind::Csv || kind == FileKind::Xyzf || kind == FileKind::Xyz;
    const bool isFlat = kind == FileKind::Csv || kind == FileKind::Gauge;
    const bool losesColours = isOlder && points.hasColours;
    const bool losesZ =
        isFlat && points.hasZ &&
        std::any_of(points.points.begin(), points.points.end(), [](const Point3& p) { return !std::isnan(p.z); });
    if (losesColours) {
        return losesZ ? "z and the colours" : "the colours";
    }
    return losesZ ? "z" : "";
}

void writePoints(const std::string& path, FileKind kind, const PointSet& points) {
    const ErrorSource source{{}, path, {}};
    checkPoints(source, points);
    if (const QString reason = reasonAgainst(kind, points); !reason.isEmpty()) {
        detail::fail(ErrorKind::Unwritable, source, reason);
    }
    switch (kind) {
    case FileKind::Cloud:
        return detail::writeCloudFile(source, points);
    case FileKind::Profiles:
        return detail::writeProfileRecords(source, points);
    case FileKind::Csv:
        return detail::writeCsvFile(source, points);
    case FileKind::Xyzf:
        return detail::writeXyzfFile(source, points);
    case FileKind::Xyz:
        return writeBytes(source, detail::formatXyz(points));
    case FileKind::Ply:
        return writeBytes(source, detail::formatPly(points));
    case FileKind::Pcd:
        return writeBytes(source, detail::formatPcd(points));
    case FileKind::Gauge:
        return writeBytes(source, detail::formatGauge(points, hasBlockHeader(path)));
    case FileKind::Table:
        return writeBytes(source, detail::formatTable(points));
    case FileKind::Npy:
        return writeBytes(source, detail::formatNpyPoints(points));
    case FileKind::Vtp:
        return writeBytes(source, detail::formatVtp(points));
    case FileKind::Stl:
    case FileKind::Vti:
    case FileKind::Gsf:
    case FileKind::Sdf:
        break; // refused above
    }
}

} // namespace KxInspect
