// Medians of many values.
#include "inspect/fitting/median.h"

#include <cmath>
#include <utility>

namespace KxInspect::detail {

namespace {

/// The sum of what `part` makes of values, as four sums that are independent of each other.
template <typename Part>
double quickSum(const std::vector<double>& values, Part part) {
    constexpr std::size_t kLanes = 4;
    double sums[kLanes] = {};
    std::size_t i = 0;
    for (; i + kLanes <= values.size(); i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            sums[lane] += part(values[i + lane]);
        }
    }
    for (; i < values.size(); ++i) {
        sums[0] += part(values[i]);
    }
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

/// Moves the values from `low` to `high` to the front.
/// @return how many are below the range, and how many in it
std::pair<std::size_t, std::size_t> gatherRange(std::vector<double>& values, double low, double high) {
    std::size_t below = 0;
    std::size_t within = 0;
    for (double& at : values) {
        const double value = at;
        at = values[within];
        values[within] = value;
        below += static_cast<std::size_t>(value < low);
        within += static_cast<std::size_t>(value >= low) & static_cast<std::size_t>(value <= high);
    }
    return {below, within};
}

} // namespace

double valueAt(std::vector<double>& values, std::size_t rank) {
    constexpr std::size_t kFewest = 24; // fewer are partitioned at once
    constexpr double kReach = 0.45; // of the mean deviation: 28 % of normal values are so near to their mean
    // Partitioning branches on each value, unpredictably. A median is likely to be near the mean: the values near it are
    // gathered without a branch, and only they are partitioned.
    std::size_t end = values.size();
    if (end >= kFewest) {
        const auto count = static_cast<double>(end);
        const double mean = quickSum(values, [](double value) { return value; }) / count;
        const double reach = kReach * quickSum(values, [&](double value) { return std::abs(value - mean); }) / count;
        const auto [below, within] = gatherRange(values, mean - reach, mean + reach);
        if (rank >= below && rank < below + within) { // not with infinite values: none is within then
            rank -= below;
            end = within;
        }
    }
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(values.begin(), at, values.begin() + static_cast<std::ptrdiff_t>(end));
    return *at;
}

} // namespace KxInspect::detail
