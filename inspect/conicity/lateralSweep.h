// The difference of rolling radii over the displacement, from running surfaces.
#pragma once

#include "inspect/conicity/oscillation.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/CrossSection.h>

#include <array>
#include <vector>

namespace KxInspect::detail {

/// The heights (y down) of the side of a contour that can touch, every `step` mm: of a wheel from its flange back, of a rail
/// from its gauge point.
std::vector<float> sampledSurface(const std::vector<Point>& contour, SectionKind kind, double from, double step);

/// How the wheel-set stands while it is centred.
struct Stand {
    std::array<double, 2> first = {}; ///< how far the rails' first samples are outside those of the wheels, mm
    double radiusDifference = 0.0; ///< of the tape circles, second minus first
};

/// The oscillation of a wheel-set: it is moved sideways by `step` mm at a time, and touches each rail where the vertical gap is
/// smallest.
Oscillation sweep(const PerWheelSetPart<std::vector<float>>& surfaces, const Stand& stand, double step);

} // namespace KxInspect::detail
