// Whether a tread is round where the sensors see it.
#pragma once

#include "inspect/wheelset/turnedWheel.h"

namespace KxInspect::detail {

/// A section is a median over profiles. Of a tread that is not round it shows some place of it, and nobody knows which.
struct TreadRoundness {
    /// By how much the radius of the tread differs, at most, between a profile and the median of all, mm: the part of it
    /// that the noise of the points does not explain. 0 for a round tread, up to 0.01 mm.
    double off = 0.0;
    /// The tread is flat all over what is seen of it: how deep, is seen nowhere.
    bool isFlat = false;
};

/// Compares the profiles that show enough of the tread; round where there are none.
TreadRoundness treadRoundness(const TurnedWheel& wheel);

} // namespace KxInspect::detail
