// A line through points of which some may be wrong.
#include "fleet/trend/theilSen.h"

#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kxfleet {

namespace {

/// What values that occur more than once take from the variance: the sum of k (k - 1) (2 k + 5) over their counts k.
double varianceOfTies(std::span<const double> values) {
    std::vector<double> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    double sum = 0.0;
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto last = std::upper_bound(first, sorted.end(), *first);
        const auto count = static_cast<double>(last - first);
        sum += count * (count - 1.0) * (2.0 * count + 5.0);
        first = last;
    }
    return sum;
}

std::vector<double> slopesOf(std::span<const double> x, std::span<const double> y) {
    std::vector<double> slopes;
    slopes.reserve(x.size() * (x.size() - 1) / 2);
    for (std::size_t i = 1; i < x.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (x[i] != x[j]) {
                slopes.push_back((y[i] - y[j]) / (x[i] - x[j]));
            }
        }
    }
    return slopes;
}

} // namespace

std::optional<TheilSenLine> theilSen(std::span<const double> x, std::span<const double> y, double quantile) {
    if (x.size() != y.size() || x.empty()) {
        return std::nullopt;
    }
    std::vector<double> slopes = slopesOf(x, y);
    if (slopes.empty()) {
        return std::nullopt;
    }
    TheilSenLine line;
    line.slope = medianOf(slopes);
    line.intercept = medianOf({y.begin(), y.end()}) - line.slope * medianOf({x.begin(), x.end()});

    const auto n = static_cast<double>(x.size());
    const double variance = (n * (n - 1.0) * (2.0 * n + 5.0) - varianceOfTies(x) - varianceOfTies(y)) / 18.0;
    const double spread = quantile * std::sqrt(std::max(variance, 0.0));
    const auto count = static_cast<double>(slopes.size());
    const double lowest = std::max(std::nearbyint((count - spread) / 2.0) - 1.0, 0.0);
    const double highest = std::min(std::nearbyint((count + spread) / 2.0), count - 1.0);
    line.low = valueOfRank(slopes, static_cast<std::size_t>(lowest));
    line.high = valueOfRank(slopes, static_cast<std::size_t>(highest));
    return line;
}

} // namespace kxfleet
