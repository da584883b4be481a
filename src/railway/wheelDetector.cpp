// Recognising the wheels among the profiles of a recording, and the profile of a wheel to measure with.
#include "KxMath/KxWheelDetection.h"

#include "railway/sensorSettings.h"
#include "railway/wheelClassifier.h"
#include "rounding/conversion.h"

#include <QtCore/QSettings>
#include <QtCore/QVariant>

#include <algorithm>
#include <cmath>
#include <utility>

namespace KxMath {

namespace {

void removeNoise(KxProfile& profile, const KxWheelDetectionSettings& s) {
    profile.removeNoise(s.noiseWindow, s.maxJumps, s.maxJump, 0.0f);
}

/// Removes the straight parts in place, where the mode does so, and says whether a wheel is in the profile.
bool isWheelProfile(KxProfile& profile, const KxWheelDetectionSettings& s, int mode) {
    if (mode != KxModeWithLowLine) {
        return detail::isWheel(profile.points, s.level, s.minPoints);
    }
    constexpr int kMinPointsInPart = 5;
    profile.removeLineParts(s.maxParts, s.maxCorrelation, s.maxGap, kMinPointsInPart);
    return detail::isWheel(profile.points, s.level, s.low, s.minPoints);
}

} // namespace

KxWheelDetectionSettings KxWheelDetectionSettings::read(QSettings& settings, int sensor) {
    const auto key = [sensor](const char* name) { return KxSensorKey(sensor, name); };
    const auto wholeNumber = [&](const char* name, float byDefault) {
        return detail::truncToInt(static_cast<double>(settings.value(key(name), byDefault).toFloat()));
    };
    KxWheelDetectionSettings s;
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

KxWheelDetector::KxWheelDetector(const KxWheelDetectionSettings& settings, int mode)
    : settings_(settings), mode_(mode) {}

bool KxWheelDetector::add(KxProfile& profile) {
    removeNoise(profile, settings_);
    return numberNext(isWheelProfile(profile, settings_, mode_));
}

bool KxWheelDetector::add(KxProfile& profile, int& withoutNoise) {
    removeNoise(profile, settings_);
    withoutNoise =
        static_cast<int>(std::count_if(profile.points.cbegin(), profile.points.cend(),
                                       [](const KxPointXY& p) { return std::isfinite(p.x) && std::isfinite(p.y); }));
    return numberNext(isWheelProfile(profile, settings_, mode_));
}

/// Numbers the next profile.
bool KxWheelDetector::numberNext(bool isWheelProfile) {
    discarded_ = 0;
    if (!isWheelProfile) {
        if (isInWheel_ && profiles_ < settings_.minProfilesInWheel) {
            discarded_ = profiles_;
            --wheel_;
        }
        isInWheel_ = false;
        return false;
    }
    if (!isInWheel_) {
        isInWheel_ = true;
        profiles_ = 0;
        ++wheel_;
    }
    ++profiles_;
    return true;
}

KxBestWheelProfile::KxBestWheelProfile(const KxLine& level) : level_(level) {}

void KxBestWheelProfile::add(KxProfile& profile) {
    profile.removeHighLevel(level_);
    ++seen_;
    if (profile.size() > best_.size()) {
        best_.points.swap(profile.points);
        number_ = seen_;
    }
}

} // namespace KxMath
