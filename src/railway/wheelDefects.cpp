// Defects of wheel treads.
#include "KxMath/KxMetro.h"
#include "KxMath/KxRecording.h"
#include "KxMath/KxWheelDetection.h"

#include "railway/sensorSettings.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>

#include <cmath>

namespace KxMath {

namespace {

/// The settings of the judgement of a train.
struct DefectSettings {
    int degree;
    float maxDeviation;
    int pointsHigher;
    int minProfiles;
    KxLine high;
    KxLine low;
};

DefectSettings readSettings(QSettings& settings, int sensor) {
    const auto key = [sensor](const char* name) { return KxSensorKey(sensor, name); };
    DefectSettings s;
    s.degree = settings.value(QStringLiteral("polynomDegree"), 20).toInt();
    s.maxDeviation = settings.value(QStringLiteral("maxDeviation"), 0.3f).toFloat();
    s.pointsHigher = settings.value(QStringLiteral("pointsHigher"), 5).toInt();
    s.minProfiles = settings.value(QStringLiteral("minimalDefectsProf"), 1).toInt();
    s.high = detail::readLine(settings, key("level_k"), -0.4f, key("level_b"), 187.0f);
    // Deliberately spelled otherwise than the low line of the wheel detection ("lowlevel_k"): keys of their own.
    s.low = detail::readLine(settings, key("lowLevel_k"), -0.4f, key("lowLevel_b"), 67.0f);
    return s;
}

/// Judges one profile of a wheel between the cut lines.
bool isSound(const QString& fileName, const DefectSettings& s) {
    KxProfile profile;
    profile.readFromFile(fileName);
    profile.removeHighLevel(s.high);
    profile.removeLowLevel(s.low);
    return METRO_detectWheelDefect(profile, s.degree, s.maxDeviation, s.pointsHigher);
}

/// Counts the sound readings of a wheel's profile number 0. Deliberately the name never goes on to the next profile, so
/// that this ends only when the file is gone.
qint64 countSoundReadings(const KxRecordingName& recording, int wheel, const DefectSettings& s) {
    const QString fileName = recording.wheelFile(wheel, 0);
    qint64 count = 0;
    while (QFile::exists(fileName)) {
        if (isSound(fileName, s)) {
            ++count;
        }
    }
    return count;
}

} // namespace

bool METRO_detectWheelDefect(KxProfile& profile, int, float maxDeviation, int pointsHigher) {
    constexpr int kDegree = 20; // deliberately whatever the caller asks for
    KxProfile smooth = profile;
    smooth.polynomFit(kDegree);
    qsizetype deviating = 0;
    const QList<KxPointXY>& points = profile.points;
    const QList<KxPointXY>& fitted = smooth.points;
    for (qsizetype i = 0; i < points.size(); ++i) {
        if (std::abs(points[i].y - fitted[i].y) > maxDeviation) { // NaN: false
            ++deviating;
        }
    }
    return deviating <= pointsHigher;
}

bool METRO_detectDefectsInTrain(QString recording, QSettings* settings, unsigned char* const marksLow,
                                unsigned char* const marksHigh, int wheelCount) {
    constexpr int kLastLowSensor = 10;
    const KxRecordingName files(recording);
    const int sensor = detail::findSensor(*settings, files.serial);
    if (sensor == detail::kNoSensor || !QDir(files.directory()).exists()) {
        return false;
    }
    if (settings->value(QStringLiteral("use"), 0).toInt() == 0) {
        return false;
    }
    const DefectSettings s = readSettings(*settings, sensor);
    unsigned char* const marks = sensor <= kLastLowSensor ? marksLow : marksHigh;
    for (int wheel = 0; wheel < wheelCount; ++wheel) { // deliberately from 0, although wheels are numbered from 1
        if (countSoundReadings(files, wheel, s) > s.minProfiles) {
            marks[wheel] = 0;
        }
    }
    return true;
}

} // namespace KxMath
