// Sets of profiles in files.
#include "KxMath/KxProfileZ.h"

#include "grid/profileRecord.h"
#include "io/blocks.h"
#include "rounding/bounds.h"

namespace KxMath {

namespace {

/// Reads records or sections up to the end of the file or a damaged one, and calls `visit` with the points of each.
template <typename Visit>
void forEachProfile(const QString& fileName, char marker, qint64 headSize, Visit visit) {
    QFile file(fileName);
    if (!detail::openForReading(file)) {
        return;
    }
    detail::BlockReader reader(file);
    const auto ignore = [](const KxPointXY*, qsizetype) {}; // no range is touched
    detail::RecordHead head; // that of a section is its first part
    while (detail::readBytes(reader, head.data(), headSize) == headSize && head[0] == marker) {
        QList<KxPointXY> points; // a new one each time, so that none keeps the capacity of a larger one
        if (!detail::readRecords(reader, detail::countIn(head), points, ignore)) {
            return;
        }
        visit(points);
    }
}

void append(QList<KxProfileZ>& profiles, float z, QList<KxPointXY>& points) {
    if (!points.isEmpty()) {
        profiles.append(KxProfileZ(z));
        profiles.last().points.swap(points);
    }
}

} // namespace

int KxProfileZSet::readFromFile(QString fileName) {
    clear();
    forEachProfile(fileName, detail::kRecordMarker, detail::kRecordHeadSize, [&](QList<KxPointXY>& points) {
        append(profiles, detail::kNaN, points); // deliberately not the position in the file
    });
    return size();
}

int KxProfileZSet::readFromFile(QString fileName, float z0, float dz) {
    clear();
    stepZ = dz;
    float z = z0;
    forEachProfile(fileName, detail::kSectionMarker, detail::kSectionHeadSize, [&](QList<KxPointXY>& points) {
        append(profiles, z, points);
        z += dz; // deliberately a running sum, which a section without points advances too
    });
    return size();
}

bool KxProfileZSet::writeToFile(QString fileName) {
    QFile file(fileName);
    if (!detail::openForWriting(file)) {
        return false;
    }
    detail::BlockWriter writer(file);
    for (const KxProfileZ& profile : std::as_const(profiles)) {
        if (!detail::writeRecord(writer, profile)) {
            return false;
        }
    }
    return writer.flush() && detail::closeWritten(file);
}

} // namespace KxMath
