// The area under a smooth curve through the points of a profile.
#pragma once

#include "Export.h"
#include "Profile.h"

#include <limits>
#include <optional>

namespace KxInspect {

/// The area under the Akima spline through the points of a profile (KxMath::KxInterpolant), between two x, mm2; negative below
/// y = 0. Each cubic is integrated in closed form and in double precision: an error comes from the spline alone, whose
/// coefficients have single precision (about 1e-7 of the heights times the width). KxMath::KxProfile::integral() sums trapezoids
/// along the same spline until two sums differ by at most 0.005, and takes ten times as long.
///
/// Points with a missing coordinate are left out; a gap is bridged by the curve. Points may come in any order; of those of
/// one x the first counts.
/// @param from, to mm; a bound beyond the points, the default, is the first or last x. The area of an empty or reversed range is 0
/// @return nothing for points with fewer than 3 different x, a bound that is NaN, and coordinates that are not finite or so
///         large that the curve is not
KXINSPECT_EXPORT std::optional<double> splineArea(const Profile& profile,
                                                  float from = -std::numeric_limits<float>::infinity(),
                                                  float to = std::numeric_limits<float>::infinity());

} // namespace KxInspect
