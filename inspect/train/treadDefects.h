// Defects of the tread, found in the single profiles of a wheel.
#pragma once

#include "inspect/train/passInputs.h"
#include "inspect/train/wheelCollector.h"

#include <KxInspect/PassResult.h>

#include <vector>

namespace KxInspect::detail {

/// How far a tread stands off the curve that the judgement fits to it.
struct TreadDeviation {
    PointList points; ///< y less y of the curve over x, mm; empty when there are too few to be judged
    int deviating = 0; ///< points farther off than allowed
    float largest = 0.0f; ///< the largest distance, mm
    bool isSound = true;
};

/// The stretch of a profile between the lines and within the range of x.
PointList cutTread(const PointList& profile, const TreadLines& lines, const DefectLimits& limits);

/// Judges that stretch as METRO_detectWheelDefect() does.
TreadDeviation judgeTread(const PointList& tread, const DefectLimits& limits);

/// Judges a wheel by the treads of its profiles.
TreadDefects judgeTreads(const std::vector<PointList>& treads, const DefectLimits& limits);

} // namespace KxInspect::detail
