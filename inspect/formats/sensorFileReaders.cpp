// Reading the kinds of point files that sensors write.
#include "inspect/base/error.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/sections.h"
#include "inspect/formats/sensorFiles.h"
#include "inspect/recordings/brokenRecord.h"

#include <QtCore/QtEndian>

namespace KxInspect::detail {

namespace {

/// A file without a byte holds no points because something went wrong before.
void refuseEmpty(const QFile& file, const ErrorSource& source) {
    if (file.size() == 0) {
        fail(ErrorKind::Unsuitable, source, QStringLiteral("is empty"));
    }
}

} // namespace

PointSet readCloudFile(QFile& file, const ErrorSource& source) {
    refuseEmpty(file, source);
    PointSet set;
    const KxMath::KxRecordKind kind = readSection(file, set);
    if (kind == KxMath::KxNoRecord || kind == KxMath::KxProfileRecord) {
        file.seek(0);
        throw brokenRecord(file, source, 0, "\2\3\4");
    }
    if (!file.atEnd()) {
        fail(ErrorKind::Unsuitable, source,
             QStringLiteral("has more data after its cloud section, at byte %1; kxmath info lists what it holds")
                 .arg(file.pos()),
             {file.pos(), {}, {}, {}});
    }
    set.hasZ = kind != KxMath::KxSectionXY;
    set.hasColours = kind == KxMath::KxSectionXYZRGB;
    return set;
}

PointSet readProfileRecords(QFile& file, const ErrorSource& source) {
    refuseEmpty(file, source);
    PointSet set;
    set.hasZ = true;
    while (!file.atEnd()) {
        set.profileStarts.push_back(set.points.size());
        const char first = file.peek(1).front();
        if (first != KxMath::KxProfileRecord || readSection(file, set) == KxMath::KxNoRecord) {
            throw brokenRecord(file, source, static_cast<std::int64_t>(set.profileStarts.size()) - 1, "\5");
        }
    }
    return set;
}

PointSet readXyzfFile(QFile& file, const ErrorSource& source) {
    refuseEmpty(file, source);
    constexpr qsizetype kRecordSize = 16;
    const QByteArray content = readAll(file, source);
    if (content.size() % kRecordSize != 0) {
        fail(ErrorKind::Damaged, source,
             QStringLiteral("has %1 bytes, not a multiple of the 16 of a point: the last one is cut short")
                 .arg(content.size()),
             {content.size() / kRecordSize * kRecordSize, {}, {}, {}});
    }
    PointSet set;
    set.hasZ = true;
    for (qsizetype at = 0; at < content.size(); at += kRecordSize) {
        float xyz[3];
        qFromLittleEndian<float>(content.constData() + at, 3, xyz);
        set.points.push_back({xyz[0], xyz[1], xyz[2]});
    }
    return set;
}

} // namespace KxInspect::detail
