// Places on a contour, from curves fitted to the points around them.
#pragma once

#include "inspect/fitting/localPolynomial.h"
#include "inspect/wheel/estimate.h"

#include <KxInspect/Profile.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

struct Vector {
    double x = 0.0;
    double y = 0.0;
};

/// The contour of a rim, from the flange back to the field side: x from the flange back, y the level, which grows towards
/// the axle.
struct RimContour {
    std::vector<Vector> points = {};
    double noise = 0.0; ///< across the contour where no curve can be fitted; NaN where it is unknown
    double spacing = 0.0; ///< the usual distance of neighbours

    explicit RimContour(const std::vector<Point>& contour);
};

/// A coordinate system on a contour: its origin, and the direction of its first axis along the contour, of length 1.
struct Frame {
    Vector origin = {};
    Vector along = {1.0, 0.0};

    double alongOf(const Vector& p) const { return (p.x - origin.x) * along.x + (p.y - origin.y) * along.y; }
    double acrossOf(const Vector& p) const { return (p.y - origin.y) * along.x - (p.x - origin.x) * along.y; }
    Vector across() const { return {-along.y, along.x}; }
};

/// What a contour is like around a place that is looked for.
struct Surroundings {
    double reach = 0.0; ///< the largest distance along the contour at which points are used, mm
    double bendStep = 0.0; ///< by how much the curvature may change there at once, 1/mm
    double least = 0.0; ///< the distance at which points are used whatever they show, mm
};

/// A quartic through the points around a place. Its reach is one at which a sudden change of the curvature moves it by no more
/// than a fifth of its standard deviation, or, where the points show a misfit, a shorter one. Where that leaves too few points,
/// it is the straight line between the two neighbours of the place.
class ContourFit {
public:
    /// @param near a point of the contour close to the origin of the frame
    /// @return empty where the contour has no points on both sides of the origin, or a gap there
    static std::optional<ContourFit> fit(const RimContour& contour, std::size_t near, const Frame& frame,
                                         const Surroundings& surroundings);

    double reach() const { return reach_; }
    double valueAt(double along) const; ///< the distance across
    double slopeAt(double along) const;
    Estimate estimateAt(double along) const; ///< of the distance across
    Estimate slopeEstimateAt(double along) const;

private:
    Estimate estimate(double value, const std::vector<double>& shares) const;
    double sagAt(double along) const;

    Frame frame_ = {};
    double reach_ = 0.0;
    std::vector<std::size_t> points_ = {};
    std::optional<LocalPolynomial> curve_ = {};
    Vector first_ = {}, second_ = {}; ///< of the straight line, along and across
    double bend_ = 0.0; ///< the curvature at the straight line, from the points beside it
    std::size_t beyond_ =
        0; ///< a number that no point has, for what is not known between the points of the straight line
    double deviation_ = 0.0;
    double freedom_ = 1.0;
};

/// Whether two neighbours of a contour are so far apart that what is between them was not seen.
bool isGap(const RimContour& contour, std::size_t first);

} // namespace KxInspect::detail
