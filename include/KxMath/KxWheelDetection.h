// Finding the wheels in a recording, profile by profile, without files.
#pragma once

#include "KxMathExport.h"
#include "KxPrimitives.h"
#include "KxProfile.h"

#include <QtCore/QString>

class QSettings;

namespace KxMath {

/// A key of one sensor in the settings, for example "SENSOR1/SN".
KXMATH_EXPORT QString KxSensorKey(int sensor, const char* key);

/// How METRO_detectWheels() cleans profiles and recognises wheels.
struct KXMATH_EXPORT KxWheelDetectionSettings {
    int minProfilesInWheel = 5; ///< shorter runs of wheel profiles are no wheel
    int noiseWindow = 3; ///< removeNoise()
    int maxJumps = 1; ///< removeNoise()
    float maxJump = 1.5f; ///< removeNoise(), mm
    KxLine level; ///< points below it are wheel
    KxLine low; ///< in mode 3 only points above it are
    int minPoints = 2; ///< a profile with more such points than this shows a wheel
    int maxParts = 1; ///< removeLineParts(), in mode 3
    float maxCorrelation = 0.0f; ///< removeLineParts(), in mode 3
    float maxGap = 10.0f; ///< removeLineParts(), in mode 3, mm

    /// The settings of one sensor as METRO_detectWheels() reads them, with its defaults for keys that are missing.
    static KxWheelDetectionSettings read(QSettings& settings, int sensor);
};

/// The mode of the wheel detection in which straight parts are removed and wheel points also lie above the low line.
inline constexpr int KxModeWithLowLine = 3;

/// The wheel detection of METRO_detectWheels(), which leaves it to the caller where profiles come from and go to.
class KXMATH_EXPORT KxWheelDetector {
public:
    KxWheelDetector(const KxWheelDetectionSettings& settings, int mode);

    /// Looks at the next profile of a recording, which is cleaned in place.
    /// @return true when it belongs to a wheel; wheel() and profile() then number it, and it is to be kept
    bool add(KxProfile& profile);
    /// The same.
    /// @param withoutNoise gets how many points with finite x and y removeNoise() has left, before any straight parts were
    /// removed
    bool add(KxProfile& profile, int& withoutNoise);

    /// The number of the wheel found last, from 1 on; 0 before the first. After the last profile: how many there are.
    int wheel() const { return wheel_; }

    /// The number of the profile in its wheel, from 1 on.
    int profile() const { return profiles_; }

    /// How many profiles the last call of add() has found to be no wheel after all, since their run was too short:
    /// those of the wheel wheel() + 1, a number that the next wheel gets. Deliberately, a run that is still open at the
    /// end of the recording is kept however short it is.
    int discarded() const { return discarded_; }

private:
    bool numberNext(bool isWheelProfile);

    KxWheelDetectionSettings settings_;
    int mode_;
    int wheel_ = 0;
    int profiles_ = 0;
    int discarded_ = 0;
    bool isInWheel_ = false;
};

/// Chooses the profile of a wheel that its distance is measured with: the one that keeps the most points below the
/// level line, the first of equal ones.
class KXMATH_EXPORT KxBestWheelProfile {
public:
    explicit KxBestWheelProfile(const KxLine& level);
    KxBestWheelProfile(const KxBestWheelProfile&) = delete;
    KxBestWheelProfile& operator=(const KxBestWheelProfile&) = delete;

    /// Looks at the next profile of the wheel, which is cut at the level line. Its points are taken when it is the best
    /// so far; it then holds others.
    void add(KxProfile& profile);

    /// The number of the best profile, counted from 1; 0 when none keeps a point.
    int number() const { return number_; }

    /// The points of the best profile below the level line.
    KxProfile& profile() { return best_; }

private:
    KxLine level_;
    KxProfile best_;
    int seen_ = 0;
    int number_ = 0;
};

} // namespace KxMath
