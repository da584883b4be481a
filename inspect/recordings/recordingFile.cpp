// The recording of one sensor: its name, its check, and the wheel files made from it.
#include "inspect/recordings/recordingFile.h"

#include "tools/kxmath/console/commandError.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

// The first byte of the two kinds of records.
constexpr char kCloudSection = 2;
constexpr char kProfileRecord = 5;

[[noreturn]] void failRecording(const QString& name, const QString& why) {
    throw CommandError{BadInput, QStringLiteral("recording '%1' %2").arg(name, why)};
}

/// Tells what is wrong where neither kind of record could be read.
QString describeDamage(QFile& file, int recordsBefore) {
    const qint64 at = file.pos();
    char first = 0;
    const bool isRead = file.getChar(&first);
    const QString place = QStringLiteral("is damaged at byte %1, after %2 whole records: ").arg(at).arg(recordsBefore);
    if (!isRead) {
        return place + file.errorString();
    }
    if (first == kCloudSection || first == kProfileRecord) {
        return place + QStringLiteral("the record that begins there is cut short by the end of the file at byte %1")
                           .arg(file.size());
    }
    return place + QStringLiteral("no record begins with 0x%1 (2 or 5 does)")
                       .arg(static_cast<unsigned char>(first), 2, 16, QLatin1Char('0'));
}

/// True when all positions are finite, none is below the one before, and the last is above the first.
bool isRising(const std::vector<float>& positions) {
    return std::all_of(positions.begin(), positions.end(), [](float z) { return std::isfinite(z); }) &&
           std::is_sorted(positions.begin(), positions.end()) && !positions.empty() &&
           positions.front() < positions.back();
}

} // namespace

RecordingFile openRecording(const QString& name) {
    const QFileInfo info(name);
    if (!info.exists()) {
        failRecording(name, QStringLiteral("does not exist"));
    }
    if (!info.isFile()) {
        failRecording(name, QStringLiteral("is not a file"));
    }
    RecordingFile recording;
    recording.name = name;
    recording.path = info.absoluteFilePath();
    recording.bytes = info.size();
    QFile file(recording.path);
    if (!file.open(QIODevice::ReadOnly)) {
        failRecording(name, QStringLiteral("cannot be read: ") + file.errorString());
    }
    if (recording.bytes == 0) {
        failRecording(name, QStringLiteral("is empty"));
    }
    const QString suffix = QStringLiteral(".bin");
    recording.linkName = info.fileName();
    if (!recording.linkName.contains(suffix)) {
        recording.linkName += suffix; // else the wheel directory would have the name of the recording
    }
    recording.wheelDirectory = recording.linkName;
    recording.wheelDirectory.remove(suffix, Qt::CaseSensitive); // every occurrence, as detection does
    const QString serial = recording.wheelDirectory.mid(recording.wheelDirectory.indexOf(QLatin1Char('_')) + 1);
    recording.serial = serial.toInt();
    if (recording.serial == 0) { // 0 is also what a missing sensor key reads as
        failRecording(name, QStringLiteral("has no serial number after the first '_' of its name: '%1'").arg(serial));
    }
    return recording;
}

void checkRecords(RecordingFile& recording, Progress& progress) {
    progress.step(QStringLiteral("checking %1").arg(recording.name));
    QFile file(recording.path);
    if (!file.open(QIODevice::ReadOnly)) {
        failRecording(recording.name, QStringLiteral("cannot be read: ") + file.errorString());
    }
    KxMath::KxPointCloud<KxMath::KxPointXY> section;
    KxMath::KxProfileZ record;
    while (file.pos() < recording.bytes) {
        if (section.readFromFile(file) >= 0) {
            ++recording.cloudSections;
        } else if (record.readFromFile(file) >= 0) {
            ++recording.profileRecords;
            recording.positions.push_back(record.z);
        } else {
            failRecording(recording.name, describeDamage(file, recording.records()));
        }
        progress.part(file.pos(), recording.bytes);
    }
    if (recording.cloudSections > 0 || !isRising(recording.positions)) {
        recording.positions.clear();
    }
}

QString wheelFile(const QString& wheelDirectory, int wheel, int profile) {
    return QStringLiteral("%1/%2_%3.bin")
        .arg(wheelDirectory, QStringLiteral("%1").arg(wheel, 2, 10, QLatin1Char('0')),
             QStringLiteral("%1").arg(profile, 2, 10, QLatin1Char('0')));
}

} // namespace kxtool
