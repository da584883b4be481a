// Wheels that stand askew: how their back faces turn against the track, and what that does to their profiles.
#pragma once

#include "inspect/train/backFace.h"
#include "inspect/train/flangeCircle.h"

#include <optional>
#include <string>
#include <vector>

namespace KxInspect::detail {

/// How a wheel stands askew, as its profiles show it. A back face that is turned about the vertical moves away from the
/// sensor, or nearer to it, while the wheel passes; where the laser cuts the wheel ahead of the axle its points are not
/// where they would be behind it.
struct Askew {
    double perPlace = 0.0; ///< travel of the face away from the sensor for each mm along the pass
    double middle = 0.0; ///< the place at which profiles stay as they are

    /// The point with the face of the wheel where it is at `middle`.
    SectionPoint straightened(const SectionPoint& p, double place) const {
        return {p.across - perPlace * (place - middle), p.down};
    }
    /// How much farther along the pass the laser cuts the wheel at a point so far behind its back face, seen square
    /// to its axle. Ring by ring the wheel is shifted along the track.
    double alongAt(double across) const { return perPlace * across; }
};

/// The offsets of a back face as a line over the places of its profiles; nothing when they do not determine one.
std::optional<RobustLine> fitFaceLine(const BackFace& face);

/// Why a wheel has no such line.
std::string whyNoFaceLine(const BackFace& face);

/// With no line: a wheel that stands straight.
Askew askewOf(const std::optional<RobustLine>& line);

} // namespace KxInspect::detail
