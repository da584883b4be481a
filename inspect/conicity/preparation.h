// Preparing measured profiles for the calculation: which way they stand, where they begin, how they are smoothed, which side can
// touch.
#pragma once

#include "inspect/sections/contourNoise.h"

#include <KxInspect/Conicity.h>

#include <string>
#include <vector>

namespace KxInspect::detail {

/// A measured profile, ready for the calculation.
struct PreparedSection {
    PlacedSection placed = {}; ///< without `points`
    std::vector<Point> contour =
        {}; ///< cleaned and turned, neither smoothed nor cut; means of groups of points where these are dense
    ContourNoise noise = {};
    std::vector<float> windows = {}; ///< for each point of the contour the length that was smoothed; empty: none
    float flangeBack = 0.0f; ///< of wheels: where the running surface begins
    bool isBackMeasured =
        false; ///< of wheels: it is where the contour shows its back, wherever the gauge counts x from
    std::vector<Point> points = {}; ///< the contour with all its points
    Profile surface = {}; ///< the running surface of the smoothed contour
    Profile unsmoothed = {}; ///< that of the contour itself
};

/// The samples of a contour for sweep(), as those of a profile that was prepared.
std::vector<float> samplesOf(const PreparedSection& section, WheelSetPart part, const std::vector<Point>& contour,
                             float gaugeDepth, double step);

/// Prepares a profile, and appends what was assumed and what is doubtful to the warnings. Throws an Error when it
/// shows no wheel or rail.
PreparedSection prepare(const Profile& profile, WheelSetPart part, const ConicityInput& input,
                        std::vector<std::string>& warnings);

} // namespace KxInspect::detail
