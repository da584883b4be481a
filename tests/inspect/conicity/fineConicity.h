// The equivalent conicity by a fine search of the contacts on the contours themselves: what measureConicity() is to give.
#pragma once

#include <KxInspect/Profile.h>

#include <optional>
#include <vector>

namespace conicity_test {

/// A wheel-set on its track. The contours are polylines with x outwards and y down; x may turn back.
struct FineWheelSet {
    std::vector<KxInspect::Point> wheel1 = {};
    std::vector<KxInspect::Point> rail1 = {};
    std::vector<KxInspect::Point> wheel2 = {};
    std::vector<KxInspect::Point> rail2 = {};
    double gauge = 1435.0;
    double gaugeDepth = 14.0; ///< 0: rails end at the gauge
    double backToBack = 1360.0;
    double radius1 = 460.0; ///< at the tape circle, 70 mm from the flange back
    double radius2 = 460.0;
};

/// The slope of the cones whose wheel-set oscillates with the same wavelength as this one at an amplitude. The wheel-set
/// does not roll; it touches each rail where the vertical gap is smallest, searched every 0.01 mm. Empty when the
/// amplitude is not reached within 12 mm.
std::optional<double> fineConicity(const FineWheelSet& wheelSet, double amplitude);

} // namespace conicity_test
