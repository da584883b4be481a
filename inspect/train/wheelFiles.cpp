// The files that show what detection has found in a recording.
#include "inspect/train/wheelFiles.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <KxInspect/AtomicFile.h>

#include <QtCore/QByteArrayList>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMap>

#include <cerrno>
#include <cstring>

namespace KxInspect::detail {

namespace {

void writeText(const QString& path, const QByteArray& text) {
    writeWholeFile({"file", path.toStdString(), {}}, {text.constData(), static_cast<std::size_t>(text.size())});
}

void writeProfile(const QString& path, const PointList& points) {
    constexpr qint64 kHead = 3; // bytes
    constexpr qint64 kPoint = 8;
    AtomicFile whole({"wheel file", path.toStdString(), {}});
    KxMath::KxProfile profile;
    profile.points = points;
    QFile file(toQt(whole.path()));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || !profile.writeToFile(file) || !file.flush()) {
        whole.fail(file.errorString().toStdString());
    }
    file.close();
    whole.commit(static_cast<std::uint64_t>(kHead + kPoint * points.size()));
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
    AtomicFile whole({"file", path.toStdString(), {}});
    QFile file(toQt(whole.path()));
    const bool isOpened = table.writeToCSVFile(file.fileName());
    // The core does not report a full disk: what it wrote is read again.
    if (!isOpened || !file.open(QIODevice::ReadOnly)) {
        whole.fail(file.errorString().toStdString());
    }
    const QByteArray text = file.readAll();
    if (text.count('\n') != table.points.size()) {
        whole.fail("only " + std::to_string(text.size()) + " bytes were stored");
    }
    file.close();
    whole.commit(static_cast<std::uint64_t>(text.size()));
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
