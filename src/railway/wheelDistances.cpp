// Distances across the wheel pairs of a train.
#include "KxMath/KxMetro.h"

#include "grid/profileRecord.h"
#include "io/binaryIo.h"
#include "railway/recordings.h"
#include "rounding/angles.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>

#include <cmath>

namespace KxMath {

namespace {

using detail::Recording;

/// One side of the track: the recording and the lines of its sensor.
struct Side {
    Recording recording;
    KxLine reference;
    KxLine level;
};

/// The group of the keys of the sensor with a serial number; without one the keys stand in no group.
QString sensorGroup(QSettings& settings, int serial) {
    for (const int sensor : {1, 2}) {
        if (serial == settings.value(detail::sensorKey(sensor, "SN"), 0).toInt()) {
            return QStringLiteral("SENSOR%1").arg(sensor);
        }
    }
    return {};
}

Side readSide(QSettings& settings, const QString& fileName) {
    const Recording recording(fileName);
    const QString group = sensorGroup(settings, recording.serial);
    return {
        recording, detail::readLine(settings, group + QStringLiteral("/k2"), 0.0f, group + QStringLiteral("/b2"), 0.0f),
        detail::readLine(settings, group + QStringLiteral("/level_k"), 0.0f, group + QStringLiteral("/level_b"), 0.0f)};
}

/// Reads one profile of a wheel and cuts it at the level line. @return false when there is no such file
bool readBelowLevel(const Side& side, int wheel, int number, KxProfile& profile) {
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
    profile.removeHighLevel(side.level);
    return true;
}

/// Reads the profile of a wheel that keeps the most points below the level line, the first of equal ones.
/// @return false when the wheel has no profile that keeps any
bool readBestProfile(const Side& side, int wheel, KxProfile& best) {
    best.clear();
    KxProfile profile;
    for (int number = 1; readBelowLevel(side, wheel, number, profile); ++number) {
        if (profile.size() > best.size()) {
            best.points.swap(profile.points);
        }
    }
    return !best.isEmpty();
}

/// Keeps the first half of the points, rounded down.
void keepFirstHalf(KxProfile& profile) {
    profile.points.resize(profile.points.size() / 2);
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
    if (!QDir(first.recording.directory).exists() || !QDir(second.recording.directory).exists()) {
        return false;
    }
    const float baseDist = settings->value(QStringLiteral("calibrLines2"), 0).toFloat();
    for (int wheel = 1; wheel <= wheelCount; ++wheel) {
        KxProfile left;
        KxProfile right;
        if (!readBestProfile(first, wheel, left) || !readBestProfile(second, wheel, right)) {
            return false;
        }
        distances[wheel - 1] = METRO_calcWheelsDist(left, right, first.reference, second.reference, baseDist);
    }
    return true;
}

} // namespace KxMath
