// Medians and what is made of them.
#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxfleet {

double valueOfRank(std::vector<double>& values, std::size_t rank) {
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

double medianOf(std::vector<double> values) {
    if (values.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const std::size_t half = values.size() / 2;
    const double upper = valueOfRank(values, half);
    if (values.size() % 2 == 1) {
        return upper;
    }
    const double lower = *std::max_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(half));
    return lower + (upper - lower) / 2.0;
}

double robustDeviation(const std::vector<double>& values) {
    constexpr double kOfNormal = 1.4826; // 1 / the 75 % quantile of the normal distribution
    const double middle = medianOf(values);
    std::vector<double> distances;
    distances.reserve(values.size());
    for (const double value : values) {
        distances.push_back(std::abs(value - middle));
    }
    return kOfNormal * medianOf(std::move(distances));
}

} // namespace kxfleet
