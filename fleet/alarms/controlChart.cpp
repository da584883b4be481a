// Finds when a station as a whole begins to measure differently.
#include "fleet/alarms/controlChart.h"

#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kxfleet {

namespace {

constexpr std::size_t kLevelDays = 60; // the level before a shift is the median of so many days at most

/// The standard deviation of a day, by the differences of neighbouring ones.
double noiseOfDays(const std::vector<StationDay>& days) {
    std::vector<double> differences;
    for (std::size_t i = 1; i < days.size(); ++i) {
        differences.push_back(days[i].residual - days[i - 1].residual);
    }
    return robustDeviation(differences) / std::sqrt(2.0);
}

double medianOfDays(const std::vector<StationDay>& days, std::size_t first, std::size_t last) {
    std::vector<double> values;
    for (std::size_t i = first; i < last; ++i) {
        values.push_back(days[i].residual);
    }
    return medianOf(std::move(values));
}

/// The first of the days up to `last` that are off `level` together: of all choices from `first` on the one that leaves
/// the smallest sum of squares when the days since then have a mean of their own.
std::size_t likeliestStart(const std::vector<StationDay>& days, std::size_t first, std::size_t last, double level) {
    double sum = 0.0;
    double most = 0.0;
    std::size_t found = last;
    for (std::size_t i = last + 1; i-- > first;) {
        sum += days[i].residual - level;
        const double gain = sum * sum / static_cast<double>(last + 1 - i);
        if (gain > most) {
            most = gain;
            found = i;
        }
    }
    return found;
}

} // namespace

std::vector<StationShift> shiftsOf(const std::vector<StationDay>& allDays, const ChartRule& rule) {
    std::vector<StationDay> days;
    for (const StationDay& day : allDays) {
        if (day.wheels >= rule.fewestWheels) {
            days.push_back(day);
        }
    }
    std::vector<StationShift> shifts;
    const auto fewest = static_cast<std::size_t>(std::max(rule.fewestDays, 2));
    if (days.size() < fewest) {
        return shifts;
    }
    const double noise = noiseOfDays(days);
    std::size_t start = 0; // of the present level
    double mean = 0.0; // of what the days are off the level
    for (std::size_t i = fewest; i < days.size(); ++i) {
        const std::size_t first = std::max(start, i - std::min(i, kLevelDays));
        const double level = medianOfDays(days, first, i);
        mean += rule.weight * (days[i].residual - level - mean);
        // The variance of an EWMA tends to weight / (2 - weight) of that of a day, that of a median of n to pi / 2 n.
        const double limit =
            rule.ofNoise * noise *
            std::sqrt(rule.weight / (2.0 - rule.weight) + std::numbers::pi / 2.0 / static_cast<double>(i - first));
        if (std::abs(mean) <= limit) {
            continue;
        }
        const std::size_t began = likeliestStart(days, first + 1, i, level);
        const double size = medianOfDays(days, began, i + 1) - level;
        if (std::abs(size) < rule.smallest) {
            continue;
        }
        shifts.push_back({days[i].day, days[began].day, size});
        start = began;
        mean = 0.0;
    }
    return shifts;
}

} // namespace kxfleet
