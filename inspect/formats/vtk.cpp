// Height maps and points as files of VTK.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/mapShape.h"
#include "inspect/formats/pointTable.h"
#include "inspect/formats/vtkXml.h"

#include <QtCore/QtEndian>

#include <array>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr auto kHead = "<?xml version=\"1.0\"?>\n<VTKFile type=\"%1\" version=\"1.0\" byte_order=\"LittleEndian\" "
                       "header_type=\"UInt64\">\n";

QByteArray headOf(const char* type) {
    return QByteArray(kHead).replace("%1", type);
}

/// Numbers of an attribute. Throws an Error Damaged unless there are N.
template <std::size_t N>
std::array<double, N> numbersIn(const ErrorSource& source, const QXmlStreamAttributes& attributes, const char* name) {
    const QByteArray text = attributes.value(QLatin1String(name)).toLatin1().simplified();
    const QList<QByteArray> words = text.split(' ');
    if (words.size() != qsizetype(N)) {
        fail(ErrorKind::Damaged, source, QStringLiteral("needs %1 numbers in %2").arg(N).arg(QLatin1String(name)));
    }
    std::array<double, N> numbers{};
    for (std::size_t i = 0; i < N; ++i) {
        numbers[i] = readNumber(source, name, words[static_cast<qsizetype>(i)]);
    }
    return numbers;
}

/// How many points an axis of an image has. @param axis 0 to 2
qint64 pointsAlong(const ErrorSource& source, const std::array<double, 6>& extent, std::size_t axis) {
    const double count = extent[2 * axis + 1] - extent[2 * axis] + 1.0;
    constexpr double kMost = 1e9;
    if (!(count >= 1.0 && count <= kMost)) { // NaN: damaged
        fail(ErrorKind::Damaged, source, QStringLiteral("has a wrong extent"));
    }
    return static_cast<qint64>(count);
}

} // namespace

HeightMap parseVti(const ErrorSource& source, const QByteArray& content) {
    const VtkFile file = parseVtk(source, content, QLatin1String("ImageData"));
    const auto extent = numbersIn<6>(source, file.grid, "WholeExtent");
    const auto origin = numbersIn<3>(source, file.grid, "Origin");
    const auto spacing = numbersIn<3>(source, file.grid, "Spacing");
    if (pointsAlong(source, extent, 2) != 1) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("has an image of several layers"));
    }
    if (numbersIn<6>(source, file.piece, "Extent") != extent) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("has a piece of the image only"));
    }
    HeightMap map;
    setShape(source, pointsAlong(source, extent, 1), pointsAlong(source, extent, 0), map);
    setPitch(source, spacing[0], spacing[1], map);
    setOrigin(source, origin[0] + extent[0] * spacing[0], origin[1] + extent[2] * spacing[1], map);
    const VtkArray* const heights = file.find(QLatin1String("PointData"), 1);
    const std::size_t cells = static_cast<std::size_t>(map.rows) * static_cast<std::size_t>(map.columns);
    if (heights == nullptr || heights->values.size() != cells) {
        fail(heights == nullptr ? ErrorKind::Unsuitable : ErrorKind::Damaged, source,
             QStringLiteral("needs %1 heights as point data, has %2")
                 .arg(cells)
                 .arg(heights == nullptr ? 0 : heights->values.size()));
    }
    map.heights.reserve(cells);
    for (const double height : heights->values) {
        map.heights.push_back(static_cast<float>(height));
    }
    return map;
}

QByteArray formatVti(const HeightMap& map) {
    const QByteArray extent =
        "0 " + QByteArray::number(map.columns - 1) + " 0 " + QByteArray::number(map.rows - 1) + " 0 0";
    const QByteArray pitch = doubleText(static_cast<double>(map.pitch));
    QByteArray heights;
    heights.reserve(static_cast<qsizetype>(map.heights.size() * sizeof(float)));
    for (const float height : map.heights) {
        appendFloat(heights, height);
    }
    return headOf("ImageData") + "<ImageData WholeExtent=\"" + extent + "\" Origin=\"" +
           doubleText(static_cast<double>(map.originX)) + ' ' + doubleText(static_cast<double>(map.originZ)) +
           " 0\" Spacing=\"" + pitch + ' ' + pitch + " 1\">\n<Piece Extent=\"" + extent +
           "\">\n<PointData Scalars=\"height\">\n" + formatVtkArray("Float32", "height", 1, heights) +
           "</PointData>\n</Piece>\n</ImageData>\n</VTKFile>\n";
}

PointSet parseVtp(const ErrorSource& source, const QByteArray& content) {
    const VtkFile file = parseVtk(source, content, QLatin1String("PolyData"));
    const VtkArray* const points = file.find(QLatin1String("Points"), 3);
    const auto claimed = numbersIn<1>(source, file.piece, "NumberOfPoints")[0];
    const std::size_t count = points == nullptr ? 0 : points->values.size() / 3;
    if (static_cast<double>(count) != claimed || (points != nullptr && points->values.size() % 3 != 0)) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has %1 points instead of %2").arg(count).arg(claimed));
    }
    const VtkArray* const colours = file.find(QLatin1String("PointData"), 3, "rgb");
    if (colours != nullptr && colours->values.size() != 3 * count) {
        fail(ErrorKind::Damaged, source, QStringLiteral("needs a colour for each point"));
    }
    PointSet set;
    set.hasZ = true;
    set.hasColours = colours != nullptr;
    for (std::size_t i = 0; i < count; ++i) {
        const double* const p = &points->values[3 * i];
        set.points.push_back({static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])});
        if (set.hasColours) {
            std::uint32_t colour = 0;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const double value = colours->values[3 * i + channel];
                colour = colour << 8 | (value >= 0.0 && value <= 255.0 ? static_cast<std::uint32_t>(value) : 0);
            }
            set.colours.push_back(colour);
        }
    }
    return set;
}

QByteArray formatVtp(const PointSet& set) {
    QByteArray points;
    QByteArray colours;
    QByteArray order; // each point is a vertex, so that viewers show it
    QByteArray ends;
    for (std::size_t i = 0; i < set.points.size(); ++i) {
        appendPoint(points, set.points[i], set.hasZ);
        if (set.hasColours) {
            for (const int shift : {16, 8, 0}) {
                colours.append(static_cast<char>((set.colours[i] >> shift) & 0xffu));
            }
        }
        char index[sizeof(qint64)];
        qToLittleEndian(static_cast<qint64>(i), index);
        order.append(index, sizeof(index));
        qToLittleEndian(static_cast<qint64>(i + 1), index);
        ends.append(index, sizeof(index));
    }
    const QByteArray count = QByteArray::number(static_cast<qint64>(set.points.size()));
    return headOf("PolyData") + "<PolyData>\n<Piece NumberOfPoints=\"" + count + "\" NumberOfVerts=\"" + count +
           "\" NumberOfLines=\"0\" NumberOfStrips=\"0\" NumberOfPolys=\"0\">\n" +
           (set.hasColours ? "<PointData>\n" + formatVtkArray("UInt8", "rgb", 3, colours) + "</PointData>\n"
                           : QByteArray()) +
           "<Points>\n" + formatVtkArray("Float32", "Points", 3, points) + "</Points>\n<Verts>\n" +
           formatVtkArray("Int64", "connectivity", 1, order) + formatVtkArray("Int64", "offsets", 1, ends) +
           "</Verts>\n</Piece>\n</PolyData>\n</VTKFile>\n";
}

} // namespace KxInspect::detail
