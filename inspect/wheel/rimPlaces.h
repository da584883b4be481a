// Places on the contour of a rim.
#pragma once

#include "inspect/wheel/contourFit.h"

#include <cstddef>
#include <optional>

namespace KxInspect::detail {

/// The tip of the flange: the least level.
struct FlangeTip {
    std::size_t near = 0; ///< a point of the contour close to it
    Vector at = {};
    Estimate level = {};
};

/// Empty where the contour does not show both sides of the tip.
std::optional<FlangeTip> findTip(const RimContour& contour);

/// The tread at a distance from the flange back.
struct TreadPlace {
    std::size_t near = 0;
    Estimate level = {};
    Estimate slope = {}; ///< the growth of the level outwards
};

/// Empty where the contour has no points around that place, beyond the tip.
std::optional<TreadPlace> findTread(const RimContour& contour, std::size_t tip, double x);

/// Where the flank between the tip and a place on the tread reaches a level.
struct FlankPlace {
    Vector at = {};
    Estimate x = {};
};

std::optional<FlankPlace> findFlank(const RimContour& contour, std::size_t tip, std::size_t tread,
                                    const Estimate& level);

/// The x of the upright face at an end of the contour, the back before `tip` and the outer face behind `tread`. Empty where the contour
/// has less than 3 mm of it.
std::optional<Estimate> findBackFace(const RimContour& contour, std::size_t tip);
std::optional<Estimate> findOuterFace(const RimContour& contour, std::size_t tread);

} // namespace KxInspect::detail
