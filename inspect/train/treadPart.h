// What of a profile is tread.
#pragma once

#include "inspect/train/wheelCollector.h"

#include <KxMath/KxPrimitives.h>

#include <vector>

namespace KxInspect::detail {

/// The tread in the profiles of a wheel. Lines in the sensor's frame cannot keep out everything else, because wheels rise
/// along the chords and may stand anywhere across the track: left out are rails and parts of the train, which are not as
/// far above the tip of the flange as a tread is, and the end of the rim, which no smooth curve follows.
/// @param profiles whole; those without a flange show no tread, unless none of them shows both
/// @param cuts what the lines leave of each, cutTread()
/// @param reference trace of the back face
std::vector<PointList> treadParts(const std::vector<PointList>& profiles, const std::vector<PointList>& cuts,
                                  const KxMath::KxLine& reference);

} // namespace KxInspect::detail
