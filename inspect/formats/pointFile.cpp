// Reading and writing the kinds of point files.
#include <KxInspect/AtomicFile.h>
#include <KxInspect/PointFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/pointFile.h"
#include "inspect/formats/sensorFiles.h"
#include "inspect/formats/textFile.h"
#include "inspect/formats/viewerFormats.h"

#include <algorithm>

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

void writePoints(const std::string& path, FileKind kind, const PointSet& points) {
    const ErrorSource source{{}, path, {}};
    checkPoints(source, points);
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
        detail::fail(ErrorKind::Unwritable, source, QStringLiteral("cannot be written: gauge files are only read"));
    }
}

} // namespace KxInspect
