// Defects of the tread, told from the profiles of one wheel.
#pragma once

#include "inspect/settings/sensorSettings.h"

#include <KxMath/KxProfile.h>

#include <functional>
#include <vector>

namespace kxtool {

/// How far one profile stands off the curve that the judgement fits to it.
struct ProfileDeviation {
    KxMath::KxProfile stretch; ///< what is judged of the profile
    KxMath::KxProfile deviation; ///< y of the stretch minus y of the curve over the x of the stretch, mm
    int deviating = 0; ///< points farther off than allowed
    float largest = 0.0f; ///< the largest distance, mm
    bool isSound = true;
};

/// The verdict over one wheel.
struct WheelDefects {
    int judged = 0; ///< profiles with enough points between the lines
    std::vector<int> profiles; ///< the numbers of the defective ones
    int deviating = 0; ///< points of all judged profiles
    int worstProfile = 0; ///< the judged one with the largest deviation, 0 when there is none
    float largest = 0.0f; ///< its deviation, mm; NaN when there is none
    bool isDefective = false; ///< more profiles are defective than allowed
};

/// A profile with fewer points between the lines is not judged: a curve of 21 coefficients follows whatever it shows.
inline constexpr int kFewestJudgedPoints = 63;

/// The stretch of the profile between the lines and within the range of x.
KxMath::KxProfile cutTread(KxMath::KxProfile& profile, const DefectLines& lines, const DefectLimits& limits);

/// Judges that stretch.
ProfileDeviation judgeProfile(KxMath::KxProfile& profile, const DefectLines& lines, const DefectLimits& limits);

/// Judges a wheel. @param read gives a profile by its number from 1 on
WheelDefects judgeWheel(int profiles, const std::function<KxMath::KxProfile(int)>& read, const DefectLines& lines,
                        const DefectLimits& limits);

} // namespace kxtool
