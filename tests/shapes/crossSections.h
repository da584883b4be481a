// Cross-sections of wheels and rails in closed form, as the conicity calculation takes them: x outwards, y down, mm.
#pragma once

#include <KxMath/KxProfile.h>

namespace kxtool {

/// Appends a wheel with a straight tread: x from 0 at the flange back to 135, the tape circle at 70 and at height 0.
/// The flange is 28 mm high; `slope` is that of the tread, which rises outwards.
void appendConicalWheel(KxMath::KxProfile& wheel, float slope);

/// Appends a rail head: an arc of the radius `radius`, 64 mm wide with its top in the middle at height 0.
void appendRoundRail(KxMath::KxProfile& rail, float radius);

} // namespace kxtool
