// Medians and what is made of them.
#pragma once

#include <cstddef>
#include <vector>

namespace kxfleet {

/// The value that is at `rank`, from 0, in ascending order. Changes the order of `values`, which hold no NaN and more than
/// `rank` elements.
double valueOfRank(std::vector<double>& values, std::size_t rank);

/// The median, the mean of both in the middle of an even number; NaN of none. Values are no NaN.
double medianOf(std::vector<double> values);

/// A standard deviation that single wrong values do not move: 1.4826 times the median distance from the median (F. R.
/// Hampel, 1974); NaN of no values.
double robustDeviation(const std::vector<double>& values);

} // namespace kxfleet
