// Finding the wheels in a recording, which leaves a file for each of their profiles.
#include "KxMath/KxMetro.h"
#include "KxMath/KxRecording.h"
#include "KxMath/KxWheelDetection.h"

#include "railway/sensorSettings.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>

namespace KxMath {

namespace {

void removeWheel(const KxRecordingName& recording, int wheel, int profiles) {
    for (int profile = 1; profile <= profiles; ++profile) {
        QFile::remove(recording.wheelFile(wheel, profile));
    }
}

/// The detection of both interface functions. `onWheelStart` is called with the wheel and the number of the record.
template <typename OnWheelStart>
bool detectWheels(const QString& fileName, QSettings& settings, int mode, int* wheelCount, OnWheelStart onWheelStart) {
    const KxRecordingName recording(fileName);
    const int sensor = detail::findSensor(settings, recording.serial);
    if (sensor == detail::kNoSensor) {
        return false;
    }
    KxWheelDetector detector(KxWheelDetectionSettings::read(settings, sensor), mode);
    if (!QDir(recording.directory()).exists()) {
        QDir().mkdir(recording.directory());
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    KxProfileZ profile;
    for (int record = 1; KxReadRecord(file, profile) != KxNoRecord; ++record) {
        if (detector.add(profile)) {
            if (detector.profile() == 1) {
                onWheelStart(detector.wheel(), record);
            }
            KxProfile& stored = profile; // a section, without the position
            stored.writeToFile(recording.wheelFile(detector.wheel(), detector.profile()));
        } else {
            removeWheel(recording, detector.wheel() + 1, detector.discarded());
        }
    }
    *wheelCount = detector.wheel();
    return true;
}

} // namespace

bool METRO_detectWheels(QString recording, QSettings* settings, int mode, int* wheelCount) {
    return detectWheels(recording, *settings, mode, wheelCount, [](int, int) {});
}

bool METRO_detectWheels_Test(QString recording, QSettings* settings, int mode, int* wheelCount, QSettings* results) {
    KxProfile trace;
    const auto note = [&](int wheel, int record) {
        results->setValue(QStringLiteral("Wheel_%1/firstProfInWheel").arg(wheel), record);
        trace.points.append(KxPointXY(static_cast<float>(wheel), static_cast<float>(record)));
    };
    if (!detectWheels(recording, *settings, mode, wheelCount, note)) {
        return false;
    }
    trace.writeToCSVFile(QStringLiteral("test.csv"));
    return true;
}

} // namespace KxMath
