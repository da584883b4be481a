// The back face of a wheel in its profiles: where it stands, profile by profile.
#pragma once

#include "inspect/fitting/robustLine.h"
#include "inspect/train/wheelCollector.h"

#include <KxMath/KxPrimitives.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// The back face in one profile.
struct FaceOffset {
    int profile = 0; ///< number in its wheel, from 1 on
    double place = 0.0; ///< of the profile along the pass
    double offset = 0.0; ///< of the face behind the reference line, square to it, mm
};

/// The back face of a wheel.
struct BackFace {
    std::vector<FaceOffset> offsets; ///< of the profiles that show enough of it, in their order
    int shown = 0; ///< profiles that show about as many points as the one with the most, the others included
    double lean = 0.0; ///< slope of the face against the reference line
    double noise = 0.0; ///< of the points about the face, as a standard deviation, mm
};

/// Finds the back face in the profiles of a wheel: in those that keep at least kLeastShare of the points that the fullest
/// keeps below the level line. In each the same number of points is used, from the first on, half as many as
/// the least of them may have: always the beginning of the face, as METRO_calcWheelsDist() takes it. Points off
/// the face are left out. The face may lean against the reference line, alike in all profiles; the offsets are those in
/// the middle of the points.
/// @param places of the profiles along the pass, in parallel
BackFace findBackFace(const std::vector<PointList>& profiles, const std::vector<double>& places,
                      const KxMath::KxLine& level, const KxMath::KxLine& reference);

inline constexpr double kLeastShare = 0.7;

} // namespace KxInspect::detail
