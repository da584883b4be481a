// Reading the kinds of point files that sensors write.
#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"
#include "inspect/formats/sections.h"
#include "inspect/formats/sensorFiles.h"

#include <QtCore/QtEndian>

namespace KxInspect::detail {

PointSet readCloudFile(const ErrorSource& source) {
    const QtPath where(source.file);
    QFile file(where.text());
    openForReading(file, source);
    PointSet set;
    const KxMath::KxRecordKind kind = readSection(file, set);
    if (kind == KxMath::KxNoRecord || kind == KxMath::KxProfileRecord) {
        fail(ErrorKind::Damaged, source, QStringLiteral("holds no whole cloud section"), {0, {}, {}, {}});
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

PointSet readProfileRecords(const ErrorSource& source) {
    const QtPath where(source.file);
    QFile file(where.text());
    openForReading(file, source);
    PointSet set;
    set.hasZ = true;
    while (!file.atEnd()) {
        const qint64 begin = file.pos();
        set.profileStarts.push_back(set.points.size());
        if (readSection(file, set) != KxMath::KxProfileRecord) {
            fail(ErrorKind::Damaged, source,
                 QStringLiteral("is damaged: no whole profile record begins at byte %1").arg(begin),
                 {begin, static_cast<std::int64_t>(set.profileStarts.size()), {}, {}});
        }
    }
    return set;
}

PointSet readXyzfFile(const ErrorSource& source) {
    constexpr qsizetype kRecordSize = 16;
    const QByteArray content = readAll(source);
    if (content.size() % kRecordSize != 0) {
        fail(ErrorKind::Damaged, source, QStringLiteral("has %1 bytes, not a multiple of 16").arg(content.size()),
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
