// The contour of a rail's head.
#pragma once

#include <KxInspect/Profile.h>

#include <utility>
#include <vector>

namespace kxsim {

/// Arcs that continue each other, from the crown outwards: the radii and where they end, measured from the middle of the head; then
/// a side of 1:20. Lengths in mm.
struct RailHead {
    std::vector<std::pair<double, double>> arcs = {
        {300.0, 10.228}, {80.0, 26.0265}, {13.0, 36.0}}; ///< 60E1, EN 13674-1 (2011)
    double inclination = 1.0 / 40.0; ///< towards the track, which is on the side of negative x
    double crownWear = 0.0; ///< how much of the crown is worn off, beside its middle
};

/// The contour from the gauge side on, y down, points `step` mm apart.
std::vector<KxInspect::Point> railHeadContour(const RailHead& head, double step);

} // namespace kxsim
