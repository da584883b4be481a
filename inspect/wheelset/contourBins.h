// A cross-section in steps along its contour.
#pragma once

#include "inspect/wheelset/axle.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// Coordinates along and off a contour. The contour goes up the back of the flange to its tip and falls from there: seen at
/// 45 degrees, each part is a function with slopes from -1 to 1, from the upright back face to the upright outer face.
struct ContourCoordinates {
    double along = 0.0;
    double off = 0.0;
};

/// A place along the contour, in steps.
struct ContourGrid {
    double tip = 0.0; ///< across: where the parts meet
    double highest = 0.0; ///< a radius that no point of the wheel exceeds by much
    double step = 0.5; ///< mm

    /// @{ How far a wheel reaches from the tip of its flange.
    static constexpr double kInwards = 30.0; // mm across
    static constexpr double kOutwards = 145.0;
    static constexpr double kDown = 65.0; // mm towards the axle; webs begin deeper
    static constexpr double kBeyond = 3.0; // mm beyond `highest`
    /// @}

    bool isBack(const TurnedPoint& p) const { return p.across < tip; }
    bool holds(const TurnedPoint& p) const {
        return p.across > tip - kInwards && p.across < tip + kOutwards && p.radius > highest - kDown &&
               p.radius < highest + kBeyond;
    }
    ContourCoordinates placeOf(const TurnedPoint& p, bool isBack) const;
    /// What placeOf() does to a step of a point.
    static ContourCoordinates stepOf(double across, double radius, bool isBack);
    TurnedPoint pointAt(const ContourCoordinates& place, bool isBack) const;

    std::size_t backBins() const;
    std::size_t bins() const;
    /// Where a place along a part is: ordered from the web up the back and down to the outer face.
    std::size_t binOf(double along, bool isBack) const;
    bool isBackBin(std::size_t bin) const { return bin < backBins(); }
};

/// A step of the contour: the median line of the points in it.
struct ContourBin {
    double along = 0.0; ///< the mean of the points: at its ends a contour covers part of a step
    double off = 0.0; ///< there
    double slope = 0.0;
    double scatter = 0.0; ///< of the points about it, as a standard deviation of normal noise
    int points = 0;
    int profiles = 0; ///< that show it

    bool isSeen() const { return profiles > 0; }
};

/// A point with its step and its coordinates.
struct BinnedPoint {
    std::size_t bin;
    ContourCoordinates place;
    int profile;
    double ahead = 0.0; ///< along the track, from the axle
};

/// The median contour of points. A step that fewer than `fewest` profiles show is not seen.
std::vector<ContourBin> medianContour(const ContourGrid& grid, const std::vector<BinnedPoint>& points, int fewest);

} // namespace KxInspect::detail
