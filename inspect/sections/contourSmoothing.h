// Smoothing of a contour.
#pragma once

#include <KxInspect/Profile.h>

#include <cstddef>
#include <vector>

namespace KxInspect::detail {

/// A place on the line through the points of a contour.
struct ContourPlace {
    Point at = {};
    std::size_t point = 0; ///< the point there, or the last one before
    float share = 0.0f; ///< of the way to the next point
};

/// Which points have a place of their own.
enum class PointPlaces { All, Tenth /**< those at least 0.05 mm from the place before */ };

/// Places about 0.1 mm apart where points are not further apart than `gap`, else at the points.
std::vector<ContourPlace> placesAlong(const std::vector<Point>& contour, float gap, PointPlaces points);

/// The places of all points.
std::vector<ContourPlace> placesOfPoints(const std::vector<Point>& contour);

/// A contour smoothed by local parabolas (see LocalFit). The smoothing is linear: how little displacements of the points displace
/// the smoothed contour follows from the same shares.
class ContourSmoothing {
public:
    /// @param contour without NaN, in order along the contour
    /// @param windows for each point the length of the contour that is fitted, half of it on each side; mm
    /// @param places where the smoothed contour has its points
    ContourSmoothing(const std::vector<Point>& contour, const std::vector<float>& windows,
                     const std::vector<ContourPlace>& places);

    const std::vector<Point>& contour() const { return smoothed_; }

    /// The normal of the length 1 at a place.
    const Point& normal(std::size_t place) const { return places_[place].normal; }

    /// How the places are displaced when the points are; as many displacements as points.
    std::vector<Point> displaced(const std::vector<Point>& displacements) const;

private:
    struct Place {
        Point normal = {};
        std::size_t first = 0; ///< of the points that have a share
        std::size_t begin = 0; ///< their shares
        std::size_t count = 0;
    };

    std::vector<Place> places_ = {};
    std::vector<float> shares_ = {};
    std::vector<Point> smoothed_ = {};
};

} // namespace KxInspect::detail
