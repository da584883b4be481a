// Profiles as radii over angles about a circle's centre.
#pragma once

#include "KxMath/KxProfile.h"

namespace KxMath::detail {

/// Turns the points into (angle in degrees, radius) about `centre`, ordered by angle.
void toAngleAndRadius(KxProfile& profile, const KxCircle& centre);

/// Turns them back.
void fromAngleAndRadius(KxProfile& profile, const KxCircle& centre);

} // namespace KxMath::detail
