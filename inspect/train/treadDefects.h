// Defects of the tread, found in the single profiles of a wheel.
#pragma once

#include "inspect/train/passInputs.h"
#include "inspect/train/wheelCollector.h"

#include <KxInspect/PassResult.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// How far a tread stands off the curve that the judgement fits to it.
struct TreadDeviation {
    PointList points; ///< y less y of the curve over x, mm; empty when the tread cannot be judged
    int deviating = 0; ///< points farther off than allowed
    float largest = 0.0f; ///< the largest distance, mm
    bool isSound = true;
};

/// The stretch of a profile between the lines and within the range of x.
PointList cutTread(const PointList& profile, const TreadLines& lines, const DefectLimits& limits);

/// The fewest points at different x with which a tread is judged: enough for the curve, and for a defect.
int fewestPoints(const DefectLimits& limits);

/// Judges that stretch as METRO_detectWheelDefect() does, except where that calls sound what it cannot know: with fewer
/// points than fewestPoints(), and without a curve.
TreadDeviation judgeTread(const PointList& tread, const DefectLimits& limits);

/// What the lines cut out of profiles.
struct CutOut {
    int treads = 0; ///< profiles that show kLeastTread of the tread
    float from = std::numeric_limits<float>::infinity(); ///< all points, behind the reference line, mm
    float to = -std::numeric_limits<float>::infinity();

    bool isEmpty() const { return !(from <= to); }
    void include(const CutOut& other) {
        treads += other.treads;
        from = std::min(from, other.from);
        to = std::max(to, other.to);
    }
};

/// The judgement of a wheel.
struct TreadVerdict {
    TreadDefects defects;
    std::string reason; ///< why there is no verdict; empty when there is one
    CutOut cutOut; ///< of all profiles
};

/// Judges a wheel by the treads of those profiles that show kLeastTread of it.
/// @param cuts what the lines leave of the profiles
/// @param treads what of that is tread, treadParts()
/// @param reference trace of the back face
TreadVerdict judgeTreads(const std::vector<PointList>& cuts, const std::vector<PointList>& treads,
                         const KxMath::KxLine& reference, const DefectLimits& limits);

} // namespace KxInspect::detail
