// Where the axle of a wheel is in the profiles of a pass, from the tips of its flange.
#pragma once

#include "inspect/fitting/leastSquares.h"
#include "inspect/train/flangeCircle.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// The axle, and how the profiles lie to it. A place that is not millimetres of travel, and a laser plane that leans
/// along the track, would make a round wheel look oval; both are found with the axle.
struct AxleFit {
    enum Unknown { Place, Down, Radius, Shear, Stretch };
    using Fit = LeastSquares<5>;

    Fit::Vector value = {}; ///< by Unknown
    Fit::Matrix covariance = {};
    double level = 0.0; ///< down at which profiles need no shear
    double scatter = 0.0; ///< of the tips about their circle, as a standard deviation, mm

    /// How far before (negative) or behind the axle a point is that lies `down` in a profile at a place.
    double fromAxle(double place, double down) const {
        return (1.0 + value[Stretch]) * (place - value[Place]) - value[Shear] * (down - level);
    }
    double radiusOf(double fromAxle, double down) const { return std::hypot(fromAxle, down - value[Down]); }
    /// How the radius of a point changes with the unknowns.
    /// @param skewed how much farther along the pass the laser meets the wheel there
    Fit::Vector changeOfRadius(double place, double down, double skewed = 0.0) const;
};

/// A value with its standard error.
struct ValueWithError {
    double value = 0.0;
    double error = 0.0;
};

/// What is known of the profiles before.
struct AxleKnowledge {
    ValueWithError shear;
    ValueWithError stretch;
    double noise = 0.0; ///< of the tips, as a standard deviation, mm; that they scatter less is chance
};

/// Whether so many tips may scatter so much about their circle by their own noise alone; both as standard deviations.
bool isByChance(double scatter, double noise, std::size_t count);

/// Fits the axle to the tips. Tips far off their circle do not count, see fitFlangeCircle().
/// @param circle the first guess
std::optional<AxleFit> fitAxle(const std::vector<ProfileTip>& tips, const FlangeCircle& circle,
                               const AxleKnowledge& known);

} // namespace KxInspect::detail
