// Triangles in the StereoLithography format (3D Systems, 1988), bytes and text.
#include "inspect/formats/mapFormats.h"
#include "inspect/formats/mapShape.h"
#include "inspect/formats/pointTable.h"
#include "inspect/formats/textFields.h"

#include <QtCore/QtEndian>

#include <array>
#include <bit>
#include <string_view>
#include <unordered_set>

namespace KxInspect::detail {

namespace {

constexpr qsizetype kTitle = 80; ///< bytes, of no meaning
constexpr qsizetype kHead = kTitle + 4; ///< the title and the count of triangles
constexpr qsizetype kTriangle = 50; ///< bytes: a normal, three corners, and two without meaning

using Bits = std::array<quint32, 3>;

/// Corners are the same when their bits are: no comparison of numbers joins two that differ.
Bits bitsOf(const Point3& p) {
    return {std::bit_cast<quint32>(p.x), std::bit_cast<quint32>(p.y), std::bit_cast<quint32>(p.z)};
}
struct Hash {
    std::size_t operator()(const Bits& bits) const {
        return std::hash<std::string_view>()({reinterpret_cast<const char*>(bits.data()), sizeof(bits)});
    }
};

/// Collects corners, each once, in the order in which they are met.
class Corners {
public:
    Corners() { set_.hasZ = true; }
    void add(const Point3& p) {
        if (known_.insert(bitsOf(p)).second) {
            set_.points.push_back(p);
        }
    }
    PointSet take() { return std::move(set_); }

private:
    PointSet set_;
    std::unordered_set<Bits, Hash> known_;
};

PointSet parseBytes(const ErrorSource& source, const QByteArray& content) {
    const qint64 count = content.size() < kHead ? -1 : qint64(qFromLittleEndian<quint32>(content.constData() + kTitle));
    if (count < 0 || content.size() != kHead + count * kTriangle) {
        fail(ErrorKind::Damaged, source,
             QStringLiteral("has %1 bytes, not those of %2 triangles")
                 .arg(content.size())
                 .arg(std::max(count, qint64(0))),
             {content.size(), {}, {}, {}});
    }
    Corners corners;
    for (qint64 i = 0; i < count; ++i) {
        const char* const triangle = content.constData() + kHead + i * kTriangle + qint64(sizeof(Point3));
        for (int corner = 0; corner < 3; ++corner) {
            float xyz[3];
            qFromLittleEndian<float>(triangle + corner * qsizetype(sizeof(xyz)), 3, xyz);
            corners.add({xyz[0], xyz[1], xyz[2]});
        }
    }
    return corners.take();
}

PointSet parseText(const ErrorSource& source, const QByteArray& content) {
    Corners corners;
    FileHeader lines(source, content);
    int inTriangle = 0;
    for (auto words = lines.nextLine(); words; words = lines.nextLine()) {
        if (words->constFirst().startsWith("endsolid")) {
            return corners.take();
        }
        if (words->constFirst() == "endloop" && std::exchange(inTriangle, 0) != 3) {
            lines.fail(ErrorKind::Damaged, QStringLiteral("has a face that is no triangle"));
        }
        if (words->constFirst() != "vertex") {
            continue;
        }
        Point3 p;
        int column = 1;
        for (float* const value : {&p.x, &p.y, &p.z}) {
            const QByteArray text = words->value(column++);
            char decimalSign = '.';
            if (parseFloat({text.constData(), static_cast<std::size_t>(text.size())}, decimalSign, *value) !=
                FieldKind::Number) {
                lines.fail(ErrorKind::Damaged, QStringLiteral("has no corner of three numbers"));
            }
        }
        ++inTriangle;
        corners.add(p);
    }
    fail(ErrorKind::Damaged, source, QStringLiteral("ends without endsolid"), {content.size(), {}, {}, {}});
}

/// Appends triangles of a map.
class Mesh {
public:
    explicit Mesh(const HeightMap& map) : map_(map), bytes_(QByteArray("height map, mm").leftJustified(kHead, ' ')) {}

    QByteArray make() {
        for (int row = 0; row + 1 < map_.rows; ++row) {
            for (int column = 0; column + 1 < map_.columns; ++column) {
                addCells(row, column);
            }
        }
        qToLittleEndian(count_, bytes_.data() + kTitle);
        return bytes_;
    }
    quint32 count() const { return count_; }

private:
    /// The triangles between four neighbouring cells; two have the diagonal from the first to the last.
    void addCells(int row, int column) {
        const std::array<Point3, 4> around = {pointAt(row, column), pointAt(row + 1, column),
                                              pointAt(row + 1, column + 1), pointAt(row, column + 1)};
        std::array<Point3, 4> known;
        std::size_t count = 0;
        for (const Point3& p : around) { // counterclockwise, seen from larger y
            if (std::isfinite(p.y)) {
                known[count++] = p;
            }
        }
        for (std::size_t i = 2; i < count; ++i) {
            addTriangle({known[0], known[i - 1], known[i]});
        }
    }

    Point3 pointAt(int row, int column) const {
        const auto pitch = static_cast<double>(map_.pitch);
        return {static_cast<float>(static_cast<double>(map_.originX) + column * pitch), map_.at(row, column),
                static_cast<float>(static_cast<double>(map_.originZ) + row * pitch)};
    }

    void addTriangle(const std::array<Point3, 3>& corners) {
        const auto difference = [](float a, float b) { return static_cast<double>(a) - static_cast<double>(b); };
        const auto edge = [&](const Point3& from, const Point3& to) {
            return std::array{difference(to.x, from.x), difference(to.y, from.y), difference(to.z, from.z)};
        };
        const auto a = edge(corners[0], corners[1]);
        const auto b = edge(corners[0], corners[2]);
        const std::array normal = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
        const double length = std::hypot(normal[0], normal[1], normal[2]);
        for (const double part : normal) {
            appendFloat(bytes_, length > 0.0 ? static_cast<float>(part / length) : 0.0f);
        }
        for (const Point3& p : corners) {
            appendPoint(bytes_, p, true);
        }
        bytes_.append(2, '\0');
        ++count_;
    }

    const HeightMap& map_;
    QByteArray bytes_;
    quint32 count_ = 0; // two for each of at most 40 million cells
};

} // namespace

PointSet parseStl(const ErrorSource& source, const QByteArray& content) {
    const bool isText = content.startsWith("solid") && content.left(1 << 12).contains("facet");
    return isText ? parseText(source, content) : parseBytes(source, content);
}

QByteArray formatStl(const ErrorSource& source, const HeightMap& map) {
    Mesh mesh(map);
    QByteArray bytes = mesh.make();
    if (mesh.count() == 0) {
        fail(ErrorKind::Unwritable, source, QStringLiteral("cannot hold a map without three neighbouring heights"));
    }
    return bytes;
}

} // namespace KxInspect::detail
