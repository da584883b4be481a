// The distance across a wheel pair, from the profiles of both wheels.
#pragma once

#include "inspect/train/wheelCollector.h"

#include <KxMath/KxPrimitives.h>

namespace KxInspect::detail {

/// The profile of a wheel that its distance is measured with.
struct ChosenProfile {
    int number = 0; ///< from 1 on; 0 when no profile keeps a point below the level line
    PointList points; ///< below the level line
};

/// Chooses among the profiles of a wheel as METRO_calcWheelsDistInTrain() does.
ChosenProfile chooseProfile(const FoundWheel& wheel, const KxMath::KxLine& level);

/// The part of a chosen profile that its line is fitted to, in METRO_calcWheelsDist().
PointList fittedHalf(const PointList& points);

/// The distance of two wheels; NaN when one has no chosen profile or too few points for a line.
///
/// METRO_calcWheelsDistInTrain() gives the same for each pair that it gets to; it ends at the first wheel without a
/// chosen profile.
float distanceOf(const ChosenProfile& first, const ChosenProfile& second, const KxMath::KxLine& firstReference,
                 const KxMath::KxLine& secondReference, float baseDistance);

} // namespace KxInspect::detail
