// A wheel as a body of revolution about an axle, fitted to its profiles.
#pragma once

#include "inspect/train/wheelSections.h"

#include <optional>
#include <string>

namespace KxInspect::detail {

/// How the profiles of a sensor lie to the track, which all wheels of a pass share.
struct StationKnowledge {
    ValueWithError shear; ///< lean of the laser plane along the track, mm for each mm down
    ValueWithError stretch; ///< by how much places are longer than they should be
    ValueWithError skew; ///< turn of the laser plane, mm along the track for each mm across
    double skewScatter = 0.0; ///< how much single wheels differ in what they tell about the skew; 0 when unknown
};

/// What is known before any profile is looked at.
StationKnowledge knowledgeOf(const LaserPlane& plane);

/// The fit of one wheel, or why there is none.
struct RoundnessFit {
    std::optional<AxleFit> axle; ///< absent without a fit
    TreadTable table;
    ValueWithError skew; ///< as StationKnowledge::skew
    ValueWithError stretch; ///< as StationKnowledge::stretch
    std::string reason; ///< empty with a fit
};

RoundnessFit fitWheel(const WheelSections& sections, const WheelView& wheel, const StationKnowledge& known);

/// What the other wheels of a side tell about the station; what is known before when there are too few of them.
/// @param without the place of the wheel that is left out
StationKnowledge knowledgeFrom(const std::vector<RoundnessFit>& fits, std::size_t without, const LaserPlane& plane);

} // namespace KxInspect::detail
