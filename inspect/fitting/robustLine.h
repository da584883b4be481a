// A straight line that single bad values do not move, and how well it is known.
#pragma once

#include <cmath>
#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A value measured somewhere.
struct Sample {
    double place;
    double value;
};

/// A line through samples, by least squares.
struct RobustLine {
    double middle = 0.0; ///< mean place of the samples used
    double height = 0.0; ///< of the line there
    double slope = 0.0;
    double spread = 0.0; ///< sum of the squared distances of the places from `middle`
    double scatter = 0.0; ///< of the samples about the line, as a standard deviation; larger where neighbours go along
    int count = 0; ///< samples used

    double at(double place) const { return height + slope * (place - middle); }
    /// @{ Standard errors, known with freedom() degrees of freedom.
    double errorAt(double place) const {
        const double away = place - middle;
        return scatter * std::sqrt(1.0 / count + away * away / spread);
    }
    double slopeError() const { return scatter / std::sqrt(spread); }
    double freedom() const { return count - 2; }
    /// @}
};

/// Fits a line. Samples far off the line through the medians of the slopes (Theil, A rank-invariant method of linear and
/// polynomial regression analysis, 1950) are left out. Where neighbours deviate alike, they count as fewer samples.
/// @param samples finite, in the order of their places
/// @return nothing for fewer than three samples that are used, or when all are in one place
std::optional<RobustLine> fitRobustLine(const std::vector<Sample>& samples);

} // namespace KxInspect::detail
