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

namespace {

/// The sections and records of a file, whose first bytes are `first` at its begin and `later` behind it.
PointSet readParts(QFile& file, const ErrorSource& source, const QByteArray& first, const QByteArray& later) {
    refuseEmpty(file, source);
    PointSet set;
    std::vector<std::size_t> starts;
    bool isRecording = true; // of flat sections and profile records
    while (!file.atEnd()) {
        const std::size_t begin = set.points.size();
        const bool hadColours = set.hasColours;
        const QByteArray& expected = starts.empty() ? first : later;
        const KxMath::KxRecordKind kind = expected.contains(file.peek(1)) ? readSection(file, set) : KxMath::KxNoRecord;
        if (kind == KxMath::KxNoRecord) {
            throw brokenRecord(file, source, static_cast<std::int64_t>(starts.size()), expected);
        }
        set.hasZ |= kind != KxMath::KxSectionXY;
        set.hasColours |= kind == KxMath::KxSectionXYZRGB;
        if (set.hasColours != (kind == KxMath::KxSectionXYZRGB) || (!starts.empty() && hadColours != set.hasColours)) {
            fail(ErrorKind::Unsuitable, source,
                 QStringLiteral("has cloud sections with and without colours, from record %1 on")
                     .arg(starts.size() + 1));
        }
        isRecording &= kind == KxMath::KxSectionXY || kind == KxMath::KxProfileRecord;
        starts.push_back(begin);
    }
    if (isRecording && (starts.size() > 1 || first == "\5")) {
        set.profileStarts = std::move(starts);
    }
    return set;
}

} // namespace

PointSet readCloudFile(QFile& file, const ErrorSource& source) {
    return readParts(file, source, "\2\3\4", "\2\3\4\5");
}

PointSet readProfileRecords(QFile& file, const ErrorSource& source) {
    return readParts(file, source, "\5", "\2\5");
}

PointSet readNumberedRecord(QFile& file, const ErrorSource& source, std::int64_t number) {
    refuseEmpty(file, source);
    for (std::int64_t i = 1; !file.atEnd(); ++i) {
        PointSet set;
        const KxMath::KxRecordKind kind = readSection(file, set);
        if (kind == KxMath::KxNoRecord) {
            throw brokenRecord(file, source, i - 1, "\2\3\4\5");
        }
        if (i == number) {
            set.hasZ = kind != KxMath::KxSectionXY;
            set.hasColours = kind == KxMath::KxSectionXYZRGB;
            return set;
        }
        if (file.atEnd()) {
            fail(ErrorKind::Unsuitable, source, QStringLiteral("has %1 records, not %2").arg(i).arg(number));
        }
    }
    return {};
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
