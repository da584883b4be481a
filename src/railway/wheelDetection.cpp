// Finding the wheels in a recording.
#include "KxMath/KxMetro.h"
#include "KxMath/KxProfileZ.h"

#include "grid/profileRecord.h"
#include "railway/recordings.h"
#include "railway/wheelClassifier.h"
#include "rounding/conversion.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>

namespace KxMath {

namespace {

using detail::Recording;
using detail::sensorKey;

constexpr int kModeWithLowLine = 3;

/// The settings of one sensor.
struct DetectionSettings {
    int minProfilesInWheel;
    int noiseWindow;
    int maxJumps;
    float maxJump;
    KxLine level;
    KxLine low;
    int minPoints;
    int maxParts;
    float maxCorrelation;
    float maxGap;
};

DetectionSettings readSettings(QSettings& settings, int sensor) {
    const auto key = [sensor](const char* name) { return sensorKey(sensor, name); };
    const auto wholeNumber = [&](const char* name, float byDefault) {
        return detail::truncToInt(static_cast<double>(settings.value(key(name), byDefault).toFloat()));
    };
    DetectionSettings s;
    s.minProfilesInWheel = settings.value(QStringLiteral("minProfsInWheel"), 5).toInt();
    s.noiseWindow = settings.value(key("wndSize"), 3).toInt();
    s.maxJumps = settings.value(key("higherPoinInWnd"), 1).toInt();
    s.maxJump = settings.value(key("maxdY"), 1.5f).toFloat();
    s.level = detail::readLine(settings, key("level_k"), -0.4f, key("level_b"), 187.0f);
    s.low = detail::readLine(settings, key("lowlevel_k"), 0.0f, key("lowlevel_b"), 0.0f);
    s.minPoints = settings.value(key("minPointsIn"), 1.5f).toInt(); // deliberately a number that toInt() rounds
    // Deliberately crossed: the number of parts is the key of a correlation, and the correlation that of the parts.
    s.maxParts = wholeNumber("maxCorr", 1.0f);
    s.maxCorrelation = static_cast<float>(wholeNumber("parts", 0.0f));
    s.maxGap = settings.value(key("maxDist"), 10.0f).toFloat();
    return s;
}

/// Reads the next profile, whichever kind of record it is. @return false at the end of the recording
bool readProfile(QFile& file, KxProfile& profile) {
    char marker = 0;
    if (file.peek(&marker, 1) != 1 || marker != detail::kRecordMarker) {
        KxPointCloud<KxPointXY>& cloud = profile;
        return cloud.readFromFile(file) >= 0;
    }
    KxProfileZ record;
    if (record.readFromFile(file) < 0) {
        return false;
    }
    profile.points.swap(record.points);
    return true;
}

/// Cleans a profile in place and tells whether a wheel is in it.
bool isWheelProfile(KxProfile& profile, const DetectionSettings& s, int mode) {
    profile.removeNoise(s.noiseWindow, s.maxJumps, s.maxJump, 0.0f);
    if (mode != kModeWithLowLine) {
        return detail::isWheel(profile.points, s.level, s.minPoints);
    }
    constexpr int kMinPointsInPart = 5;
    profile.removeLineParts(s.maxParts, s.maxCorrelation, s.maxGap, kMinPointsInPart);
    return detail::isWheel(profile.points, s.level, s.low, s.minPoints);
}

void removeWheel(const Recording& recording, int wheel, int profiles) {
    for (int profile = 1; profile <= profiles; ++profile) {
        QFile::remove(recording.wheelFile(wheel, profile));
    }
}

/// The detection of both interface functions. `onWheelStart` is called with the wheel and the number of the record.
template <typename OnWheelStart>
bool detectWheels(const QString& fileName, QSettings& settings, int mode, int* wheelCount, OnWheelStart onWheelStart) {
    const Recording recording(fileName);
    const int sensor = detail::findSensor(settings, recording.serial);
    if (sensor == detail::kNoSensor) {
        return false;
    }
    const DetectionSettings s = readSettings(settings, sensor);
    if (!QDir(recording.directory).exists()) {
        QDir().mkdir(recording.directory);
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    int wheel = 0;
    bool isInWheel = false;
    int profiles = 0;
    KxProfile profile;
    for (int record = 1; readProfile(file, profile); ++record) {
        if (isWheelProfile(profile, s, mode)) {
            if (!isInWheel) {
                isInWheel = true;
                profiles = 0;
                ++wheel;
                onWheelStart(wheel, record);
            }
            ++profiles;
            profile.writeToFile(recording.wheelFile(wheel, profiles));
        } else {
            if (isInWheel && profiles < s.minProfilesInWheel) {
                removeWheel(recording, wheel, profiles);
                --wheel;
            }
            isInWheel = false;
        }
    }
    // Deliberately, a wheel still open at the end is kept however short it is.
    *wheelCount = wheel;
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
