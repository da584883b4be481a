// Cloud sections in files.
#include "KxMath/KxPointCloud.h"
#include "KxMath/KxRecording.h"

#include "cloud/pointTraits.h"
#include "cloud/rangeWidening.h"
#include "io/binaryIo.h"

#include <type_traits>

namespace KxMath {

namespace {

/// How a section of points of one type begins.
template <typename Point>
struct Section;

template <>
struct Section<KxPointXY> {
    static constexpr quint8 kType = KxSectionXY;
    using Count = quint16; // deliberately narrow: larger clouds are written with their count modulo 65536
};

template <>
struct Section<KxPointXYZ> {
    static constexpr quint8 kType = KxSectionXYZ;
    using Count = quint32;
};

template <>
struct Section<KxPointXYZRGB> {
    static constexpr quint8 kType = KxSectionXYZRGB;
    using Count = quint32;
};

template <typename Point>
bool writeSection(QFile& file, const QList<Point>& points) {
    using Count = typename Section<Point>::Count;
    return detail::writeUnsigned(file, Section<Point>::kType) &&
           detail::writeUnsigned(file, static_cast<Count>(points.size())) && detail::writeRecords(file, points);
}

bool writeByte(QFile& file, unsigned char byte) {
    return detail::writeUnsigned<quint8>(file, byte);
}

bool readByte(QFile& file, unsigned char expected) {
    quint8 byte = 0;
    return detail::readUnsigned(file, byte) && byte == expected;
}

template <typename Cloud, typename Point>
int readSection(Cloud& cloud, QFile& file, QList<Point>& points) {
    cloud.clear();
    if constexpr (detail::kHasZ<Point>) {
        cloud.zIndexBuilt = 0;
    }
    return detail::readOrRewind(file, [&] {
        typename Section<Point>::Count count = 0;
        const auto widen = [&](const Point* first, qsizetype n) { detail::widenRange(cloud, first, n); };
        if (!readByte(file, Section<Point>::kType) || !detail::readUnsigned(file, count) ||
            !detail::readRecords(file, count, points, widen)) {
            return -1;
        }
        return static_cast<int>(count);
    });
}

template <typename Cloud>
bool writeFile(Cloud& cloud, const QString& name) {
    QFile file(name);
    if (!detail::openForWriting(file)) {
        return false;
    }
    const bool isWritten = cloud.writeToFile(file);
    return detail::closeWritten(file) && isWritten;
}

template <typename Cloud>
int readFile(Cloud& cloud, const QString& name) {
    QFile file(name);
    if (!detail::openForReading(file)) {
        return -1;
    }
    return cloud.readFromFile(file);
}

} // namespace

// The members of all clouds, see container.cpp.
#define KXMATH_DEFINE_FILES(Point)                                                                                     \
    bool KxPointCloud<Point>::writeToFile(QFile& f) {                                                                  \
        return writeSection(f, points);                                                                                \
    }                                                                                                                  \
    bool KxPointCloud<Point>::writeToFile(QString name) {                                                              \
        return writeFile(*this, name);                                                                                 \
    }                                                                                                                  \
    int KxPointCloud<Point>::readFromFile(QFile& f) {                                                                  \
        return readSection(*this, f, points);                                                                          \
    }                                                                                                                  \
    int KxPointCloud<Point>::readFromFile(QString name) {                                                              \
        return readFile(*this, name);                                                                                  \
    }                                                                                                                  \
    bool KxPointCloud<Point>::writeMarker(QFile& f, unsigned char m) {                                                 \
        return writeByte(f, m);                                                                                        \
    }                                                                                                                  \
    bool KxPointCloud<Point>::readMarker(QFile& f, unsigned char m) {                                                  \
        return readByte(f, m);                                                                                         \
    }

KXMATH_DEFINE_FILES(KxPointXY)
KXMATH_DEFINE_FILES(KxPointXYZ)
KXMATH_DEFINE_FILES(KxPointXYZRGB)

bool KxPointCloud<KxPointXYZ>::compat_writeToXYZFile(QString name) {
    struct Record {
        float x, y, z, zero;
    };
    QFile file(name);
    if (!detail::openForWriting(file)) {
        return false;
    }
    QList<Record> records;
    records.reserve(points.size());
    for (const KxPointXYZ& p : std::as_const(points)) {
        records.append({p.x, p.y, p.z, 0.0f});
    }
    const bool isWritten = detail::writeRecords(file, records);
    return detail::closeWritten(file) && isWritten;
}

} // namespace KxMath
