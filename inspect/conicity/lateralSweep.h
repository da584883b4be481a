// The difference of rolling radii over the displacement, from running surfaces.
#pragma once

#include "inspect/conicity/oscillation.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/CrossSection.h>

#include <array>
#include <vector>

namespace KxInspect::detail {

/// The heights (y down) of the side of a contour that can touch, every 0.1 mm: of a wheel from its flange back, of a rail from
/// its gauge point.
std::vector<float> sampledSurface(const std::vector<Point>& contour, SectionKind kind, double from);

/// How the wheel-set stands while it is centred.
struct Stand {
    std::array<long, 2> first = {}; ///< index of the wheels' samples over the rails' first ones
    double radiusDifference = 0.0; ///< of the tape circles, second minus first
};

/// The oscillation of a wheel-set: it is moved sideways by 0.1 mm at a time, and touches each rail where the vertical gap is
/// smallest.
Oscillation sweep(const PerWheelSetPart<std::vector<float>>& surfaces, const Stand& stand);

} // namespace KxInspect::detail
