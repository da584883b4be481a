// Arbitrary bytes as cloud sections of each kind.
#include "input.h"
#include "scratch.h"

using namespace KxMath;

namespace {

/// Reads sections until one fails; writes each and reads it again.
template <typename Point>
void readAll(const QString& path) {
    QFile file(path);
    kxfuzz::require(file.open(QIODevice::ReadOnly));
    for (;;) {
        KxPointCloud<Point> cloud;
        const qint64 start = file.pos();
        const int count = cloud.readFromFile(file);
        kxfuzz::require(cloud.points.capacity() * qsizetype(sizeof(Point)) <= 2 * file.size() + 4096);
        if (count < 0) {
            kxfuzz::require(file.pos() == start);
            return;
        }
        kxfuzz::require(count == cloud.size());
        const qint64 length = file.pos() - start;
        QFile copy(kxfuzz::scratchFile(QStringLiteral("copy")));
        kxfuzz::require(copy.open(QIODevice::ReadWrite | QIODevice::Truncate) && cloud.writeToFile(copy));
        kxfuzz::require(copy.pos() == length && copy.seek(0) && file.seek(start));
        kxfuzz::require(copy.readAll() == file.read(length));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    const QString path = kxfuzz::writeScratch("cloud", data, size);
    readAll<KxPointXY>(path);
    readAll<KxPointXYZ>(path);
    readAll<KxPointXYZRGB>(path);
    KxPointCloud<KxPointXYZ> cloud;
    cloud.readFromFile(path);
    kxfuzz::require(cloud.compat_writeToXYZFile(kxfuzz::scratchFile(QStringLiteral("copy"))));
    return 0;
}
