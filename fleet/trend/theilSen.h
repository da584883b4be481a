// A line through points of which some may be wrong.
#pragma once

#include <optional>
#include <span>

namespace kxfleet {

/// A line by medians, which single wrong points do not move.
struct TheilSenLine {
    double slope = 0.0; ///< the median of the slopes between any two points with different x
    double low = 0.0; ///< lower end of the slope's confidence interval
    double high = 0.0; ///< its upper end
    double intercept = 0.0; ///< median of y - slope * median of x: the line at x = 0
};

/// The line of Theil and Sen through points (x[i], y[i]), all of them finite, with the confidence interval of its slope
/// (P. K. Sen, Estimates of the regression coefficient based on Kendall's tau, 1968, with the variance for ties in x and
/// y). Nothing when no two points have different x, or when x and y differ in size. Takes time and memory for
/// all pairs: 1000 points have half a million.
/// `quantile` of the normal distribution belongs to the interval: 1.96 for 95 %.
std::optional<TheilSenLine> theilSen(std::span<const double> x, std::span<const double> y,
                                     double quantile = 1.959963984540054);

} // namespace kxfleet
