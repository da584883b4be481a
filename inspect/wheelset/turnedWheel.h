// One wheel as one sensor sees it: the axle about which all of its profiles show the same cross-section.
#pragma once

#include "inspect/wheelset/contourBins.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// Fewest profiles that show a step of the contour, and that give an axle.
inline constexpr int kFewestProfiles = 5;

struct TurnedWheel {
    Axle axle;
    ContourGrid grid;
    std::vector<BinnedPoint> points; ///< those of the wheel
    std::vector<ContourBin> contour; ///< their median
    /// How a place of the contour moves with the parameters of the axle: the mean over the points of each step, along `off`.
    std::vector<Axle::Parameters> gradients;
    /// By how much the parameters differ when one group of successive profiles is left out.
    std::vector<Axle::Parameters> withoutGroup;
    int profiles = 0;
    std::string reason; ///< why there is no axle; empty when there is one

    bool isFound() const { return reason.empty(); }
};

/// Where the flat back of the wheel is: across, where most points of an inner sensor are. Empty without a face within 30 mm
/// of where it is `expected`.
std::optional<double> findFace(const std::vector<TrackPoint>& points, double expected);

/// @param face across: the back of the flange, to a few mm
/// @param start where another sensor has found the wheel; null: where the tips of the flange are on a circle
TurnedWheel turnWheel(const std::vector<TrackPoint>& points, int profiles, double face,
                      const TurnedWheel* start = nullptr);

} // namespace KxInspect::detail
