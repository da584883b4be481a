// The files that show what detection has found in a recording.
#include "inspect/train/wheelFiles.h"

#include "inspect/base/error.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMap>

#include <cerrno>
#include <cstring>

namespace KxInspect::detail {

namespace {

[[noreturn]] void failFile(const char* role, const QFile& file) {
    fail(ErrorKind::Unwritable, {role, file.fileName().toStdString(), {}},
         QStringLiteral("cannot be written: ") + file.errorString());
}

/// Writes a file by `write(file)`, which returns false on failure.
template <typename Write>
void writeFile(const char* role, const QString& path, qint64 size, Write write) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || !write(file) || !file.flush() ||
        file.size() != size) {
        failFile(role, file);
    }
}

void writeText(const QString& path, const QByteArray& text) {
    writeFile("file", path, text.size(), [&](QFile& file) { return file.write(text) == text.size(); });
}

void writeProfile(const QString& path, const PointList& points) {
    constexpr qint64 kHead = 3; // bytes
    constexpr qint64 kPoint = 8;
    KxMath::KxProfile profile;
    profile.points = points;
    writeFile("wheel file", path, kHead + kPoint * points.size(),
              [&](QFile& file) { return profile.writeToFile(file); });
}

void makeFolder(const QString& path) {
    errno = 0;
    if (!QDir().mkpath(path)) {
        fail(ErrorKind::Unwritable, {"folder", path.toStdString(), {}},
             QStringLiteral("cannot be made: ") +
                 (errno != 0 ? QString::fromLocal8Bit(std::strerror(errno)) : QStringLiteral("it is not a folder")));
    }
}

/// Writes the starts as points (wheel, record).
void writeStartsTable(const QString& path, const std::vector<WheelStart>& starts) {
    KxMath::KxProfile table;
    for (const WheelStart& start : starts) {
        table.points.append(KxMath::KxPointXY(static_cast<float>(start.wheel), static_cast<float>(start.record)));
    }
    const bool isOpened = table.writeToCSVFile(path);
    QFile file(path); // the core does not report a full disk
    if (!isOpened || !file.open(QIODevice::ReadOnly) || file.readAll().count('\n') != table.points.size()) {
        failFile("file", file);
    }
}

/// A number of a wheel that was too short comes again; the later start counts. In the order of QSettings: by the text.
void writeStarts(const QString& path, const std::vector<WheelStart>& starts) {
    writeStartsTable(path + QStringLiteral(".csv"), starts);
    QMap<QByteArray, int> records;
    for (const WheelStart& start : starts) {
        records["Wheel_" + QByteArray::number(start.wheel)] = start.record;
    }
    QByteArrayList sections;
    for (auto at = records.cbegin(); at != records.cend(); ++at) {
        sections.append('[' + at.key() + "]\nfirstProfInWheel=" + QByteArray::number(at.value()) + '\n');
    }
    if (!sections.isEmpty()) {
        writeText(path + QStringLiteral(".ini"), sections.join('\n'));
    }
}

} // namespace

void writeWheelFiles(const QString& folder, const RecordingFiles& recording, int sensor, const WheelCollector& found) {
    makeFolder(folder + QLatin1Char('/') + recording.parts.base);
    int number = 0;
    for (const FoundWheel& wheel : found.wheels()) {
        ++number;
        int profile = 0;
        for (const PointList& points : wheel.profiles) {
            writeProfile(recording.wheelFile(folder, number, ++profile), points);
        }
    }
    writeStarts(folder + QStringLiteral("/starts-%1").arg(sensor), found.starts());
}

} // namespace KxInspect::detail
