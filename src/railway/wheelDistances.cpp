// Distances across the wheel pairs of a train.
#include "KxMath/KxMetro.h"
#include "KxMath/KxRecording.h"
#include "KxMath/KxWheelDetection.h"

#include "grid/profileRecord.h"
#include "io/binaryIo.h"
#include "lists/checked.h"
#include "railway/sensorSettings.h"
#include "rounding/angles.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>

#include <cmath>

namespace KxMath {

namespace {

/// One side of the track: the recording and the lines of its sensor.
struct Side {
    KxRecordingName recording;
    KxLine reference;
    KxLine level;
};

/// The group of the keys of the sensor with a serial number; without one the keys stand in no group.
QString sensorGroup(QSettings& settings, int serial) {
    for (const int sensor : {1, 2}) {
        if (serial == settings.value(KxSensorKey(sensor, "SN"), 0).toInt()) {
            return QStringLiteral("SENSOR%1").arg(sensor);
        }
    }
    return {};
}

Side readSide(QSettings& settings, const QString& fileName) {
    const KxRecordingName recording(fileName);
    const QString group = sensorGroup(settings, recording.serial);
    return {
        recording, detail::readLine(settings, group + QStringLiteral("/k2"), 0.0f, group + QStringLiteral("/b2"), 0.0f),
        detail::readLine(settings, group + QStringLiteral("/level_k"), 0.0f, group + QStringLiteral("/level_b"), 0.0f)};
}

/// Reads one profile of a wheel. @return false when there is no such file
bool readWheelProfile(const Side& side, int wheel, int number, KxProfile& profile) {
    profile.points.clear(); // what cannot be read leaves no points
    QFile file(side.recording.wheelFile(wheel, number));
    if (!file.open(QIODevice::ReadOnly)) {
        return file.exists();
    }
    detail::RecordHead head;
    const qint64 arrived = detail::readBytes(file, head.data(), detail::kSectionHeadSize);
    if (arrived == detail::kSectionHeadSize && head[0] == detail::kSectionMarker) {
        const auto ignore = [](const KxPointXY*, qsizetype) {}; // the range is not asked for
        detail::readRecords(file, detail::countIn(head), profile.points, ignore);
    }
    return true;
}

/// Reads the profiles of a wheel and chooses among them. @return false when none keeps a point below the level line
bool readBestProfile(const Side& side, int wheel, KxBestWheelProfile& best) {
    KxProfile profile;
    for (int number = 1; readWheelProfile(side, wheel, number, profile); ++number) {
        best.add(profile);
    }
    return best.number() > 0;
}

/// Keeps the first half of the points, rounded down.
void keepFirstHalf(KxProfile& profile) {
    detail::truncate(profile.points, profile.points.size() / 2);
}

/// The offset of a wheel from the reference line, perpendicular to that line.
float offsetFrom(const KxLine& reference, KxProfile& wheel) {
    KxLine line;
    wheel.calcLine(line);
    const float perpendicular = std::abs(detail::cosF(detail::atanF(reference.k)));
    return (line.b - reference.b) * perpendicular;
}

} // namespace

float METRO_calcWheelsDist(KxProfile& left, KxProfile& right, KxLine refLeft, KxLine refRight, float baseDist) {
    keepFirstHalf(left);
    keepFirstHalf(right);
    const float leftOffset = offsetFrom(refLeft, left);
    const float rightOffset = offsetFrom(refRight, right);
    return leftOffset + baseDist + rightOffset;
}

bool METRO_calcWheelsDistInTrain(QString recording1, QString recording2, int wheelCount, QSettings* settings,
                                 float* distances) {
    const Side first = readSide(*settings, recording1);
    const Side second = readSide(*settings, recording2);
    if (!QDir(first.recording.directory()).exists() || !QDir(second.recording.directory()).exists()) {
        return false;
    }
    const float baseDist = settings->value(QStringLiteral("calibrLines2"), 0).toFloat();
    for (int wheel = 1; wheel <= wheelCount; ++wheel) {
        KxBestWheelProfile left(first.level);
        KxBestWheelProfile right(second.level);
        if (!readBestProfile(first, wheel, left) || !readBestProfile(second, wheel, right)) {
            return false;
        }
        distances[wheel - 1] =
            METRO_calcWheelsDist(left.profile(), right.profile(), first.reference, second.reference, baseDist);
    }
    return true;
}

} // namespace KxMath
