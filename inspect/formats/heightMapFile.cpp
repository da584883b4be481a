// Reading and writing files of height maps.
#include <KxInspect/AtomicFile.h>
#include <KxInspect/HeightMapFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/openFile.h"

#include <cmath>

namespace KxInspect {

namespace {

void checkMap(const ErrorSource& source, const HeightMap& map, bool hasPlaces) {
    const bool hasShape = map.rows > 0 && map.columns > 0;
    if (!hasShape || map.heights.size() / static_cast<std::size_t>(map.columns) != static_cast<std::size_t>(map.rows) ||
        map.heights.size() % static_cast<std::size_t>(map.columns) != 0) {
        detail::fail(ErrorKind::BadArgument, source,
                     QStringLiteral("needs a height for each of %1 x %2 cells, got %3")
                         .arg(map.rows)
                         .arg(map.columns)
                         .arg(map.heights.size()));
    }
    const bool hasPitch = std::isfinite(map.pitch) && map.pitch > 0.0f;
    if (hasPlaces && !(hasPitch && std::isfinite(map.originX) && std::isfinite(map.originZ))) {
        detail::fail(ErrorKind::BadArgument, source, QStringLiteral("needs a map with a pitch above 0 and an origin"));
    }
}

/// The bytes of a file that is no file of points.
std::optional<QByteArray> formatMap(const ErrorSource& source, FileKind kind, const HeightMap& map) {
    switch (kind) {
    case FileKind::Npy:
        return detail::formatNpyMap(source, map);
    case FileKind::Vti:
        return detail::formatVti(map);
    case FileKind::Gsf:
        return detail::formatGsf(map);
    case FileKind::Sdf:
        return detail::formatSdf(source, map);
    case FileKind::Stl:
        return detail::formatStl(source, map);
    default:
        return {};
    }
}

HeightMap parseMap(const ErrorSource& source, FileKind kind, const QByteArray& content) {
    switch (kind) {
    case FileKind::Npy:
        return detail::parseNpyMap(source, content);
    case FileKind::Vti:
        return detail::parseVti(source, content);
    case FileKind::Gsf:
        return detail::parseGsf(source, content);
    default:
        return detail::parseSdf(source, content);
    }
}

} // namespace

bool holdsHeightMap(FileKind kind) {
    return kind == FileKind::Npy || kind == FileKind::Vti || kind == FileKind::Gsf || kind == FileKind::Sdf;
}

PointSet pointsOf(const HeightMap& map) {
    PointSet set;
    set.hasZ = true;
    const auto pitch = static_cast<double>(map.pitch);
    for (int row = 0; row < map.rows; ++row) {
        const auto z = static_cast<float>(static_cast<double>(map.originZ) + row * pitch);
        for (int column = 0; column < map.columns; ++column) {
            const float height = map.at(row, column);
            if (!std::isnan(height)) {
                set.points.push_back(
                    {static_cast<float>(static_cast<double>(map.originX) + column * pitch), height, z});
            }
        }
    }
    return set;
}

HeightMap readHeightMap(const std::string& path, FileKind kind, std::optional<float> pitch) {
    const ErrorSource source{{}, path, {}};
    if (!holdsHeightMap(kind)) {
        detail::fail(
            ErrorKind::Unsuitable, source,
            QStringLiteral("is read as %1, which holds no height map").arg(QString::fromStdString(kindName(kind))));
    }
    const bool isGood = pitch && std::isfinite(*pitch) && *pitch > 0.0f;
    if (isGood != (kind == FileKind::Npy)) {
        detail::fail(ErrorKind::BadArgument, {{}, path, "pitch"},
                     kind == FileKind::Npy ? QStringLiteral("needs a pitch above 0 for the heights of an array")
                                           : QStringLiteral("has a pitch of its own"));
    }
    const detail::QtPath where(path);
    QFile file(where.text());
    detail::openForReading(file, source);
    HeightMap map = parseMap(source, kind, detail::readAll(file, source));
    map.pitch = pitch.value_or(map.pitch);
    return map;
}

void writeHeightMap(const std::string& path, FileKind kind, const HeightMap& map) {
    const ErrorSource source{{}, path, {}};
    checkMap(source, map, kind != FileKind::Npy);
    if (const std::optional<QByteArray> bytes = formatMap(source, kind, map)) {
        writeWholeFile(source, {bytes->constData(), static_cast<std::size_t>(bytes->size())});
    } else {
        writePoints(path, kind, pointsOf(map));
    }
}

} // namespace KxInspect
