// Profiles with a position along the scan axis, and their records in files.
#include "KxMath/KxProfileZ.h"

#include "grid/profileRecord.h"
#include "io/binaryIo.h"
#include "rounding/bounds.h"

#include <cstring>

namespace KxMath {

using detail::kNaN;

namespace {

void appendPoints(KxProfile& profile, const KxProfile& other) {
    const QList<KxPointXY> added = other.points; // shared, so that a profile can be assigned to itself
    if (profile.points.isEmpty()) {
        profile.points = added; // shared until one of them writes, so that copies of whole sets are cheap
    } else {
        profile.points.append(added);
    }
}

} // namespace

KxProfileZ::KxProfileZ() : z(kNaN) {}

KxProfileZ::KxProfileZ(float z) : z(z) {}

KxProfileZ::KxProfileZ(float z, float* buffer, unsigned short count) : KxProfile(buffer, count), z(z) {}

// NOLINTNEXTLINE(bugprone-copy-constructor-init): the assignment below appends the points of the base
KxProfileZ::KxProfileZ(const KxProfileZ& other) : KxProfile() {
    *this = other;
}

KxProfileZ::KxProfileZ(const KxProfile& other) {
    *this = other;
}

KxProfileZ::~KxProfileZ() = default;

void KxProfileZ::operator=(const KxProfileZ& other) {
    appendPoints(*this, other); // deliberately behind the points already here
    z = other.z;
}

void KxProfileZ::operator=(const KxProfile& other) {
    appendPoints(*this, other); // deliberately behind the points already here
    z = kNaN;
}

void KxProfileZ::clear() {
    points.clear();
    z = kNaN;
}

bool KxProfileZ::writeToFile(QFile& file) {
    return detail::writeRecord(file, *this);
}

bool KxProfileZ::writeToFile(QString fileName) {
    QFile file(fileName);
    if (!detail::openForWriting(file)) {
        return false;
    }
    const bool isWritten = writeToFile(file);
    return detail::closeWritten(file) && isWritten;
}

int KxProfileZ::readFromFile(QFile& file) {
    clear();
    return detail::readOrRewind(file, [&] {
        quint16 count = 0;
        if (!readMarker(file, detail::kRecordMarker) || !detail::readUnsigned(file, count)) {
            return -1;
        }
        // Straight into z: of a position cut short the bytes that are there stay.
        char bytes[sizeof(float)];
        const qint64 arrived = detail::readBytes(file, bytes, sizeof(bytes));
        detail::swapFieldsUnlessLittleEndian(bytes, arrived);
        std::memcpy(&z, bytes, static_cast<size_t>(arrived));
        const auto ignore = [](const KxPointXY*, qsizetype) {}; // the range is not touched
        if (arrived < static_cast<qint64>(sizeof(bytes)) || !detail::readRecords(file, count, points, ignore)) {
            return -1;
        }
        return static_cast<int>(count);
    });
}

int KxProfileZ::readFromFile(QString fileName) {
    QFile file(fileName);
    if (!detail::openForReading(file)) {
        return -1;
    }
    return readFromFile(file);
}

} // namespace KxMath
