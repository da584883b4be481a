// The hollow that wear leaves in a tread.
#pragma once

#include "inspect/wheel/contourFit.h"

#include <optional>

namespace KxInspect::detail {

/// The hollow of a tread: how far the tread rises again towards the field side.
struct TreadHollow {
    Estimate depth = {}; ///< not positive where it does not rise
    Vector bottom = {}; ///< where the tread is lowest
    Vector crest = {}; ///< where it is highest outside of that
};

/// Looks for the hollow from the fillet of the flange to the chamfer of the tread.
/// @param tape a point of the contour at the tape circle
/// @return empty where the tread is not seen to 20 mm beyond the tape circle, or has a gap
std::optional<TreadHollow> findHollow(const RimContour& contour, std::size_t tape);

} // namespace KxInspect::detail
