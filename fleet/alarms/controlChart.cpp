// Finds when a station as a whole begins to measure differently.
#include "fleet/alarms/controlChart.h"

#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kxfleet {

namespace {

constexpr std::size_t kDaysOfSize = 2; // behind the one on which it began; later ones are expected with it

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

/// The first of the days from `first` to `last` that are off together: of all choices the one that leaves the smallest sum
/// of squares when the days since then have a mean of their own.
std::size_t likeliestStart(const std::vector<StationDay>& days, std::size_t first, std::size_t last) {
    double sum = 0.0;
    double most = 0.0;
    std::size_t found = last;
    for (std::size_t i = last + 1; i-- > first;) {
        sum += days[i].residual;
        const double gain = sum * sum / static_cast<double>(last + 1 - i);
        if (gain > most) {
            most = gain;
            found = i;
        }
    }
    return found;
}

} // namespace

std::optional<StationShift> firstShift(const std::vector<StationDay>& allDays, double after, const ChartRule& rule) {
    std::vector<StationDay> days;
    for (const StationDay& day : allDays) {
        if (day.wheels >= rule.fewestWheels) {
            days.push_back(day);
        }
    }
    const auto fewest = static_cast<std::size_t>(std::max(rule.fewestDays, 2));
    if (days.size() < fewest) {
        return {};
    }
    // The variance of an EWMA tends to weight / (2 - weight) of that of a day.
    const double limit = rule.ofNoise * noiseOfDays(days) * std::sqrt(rule.weight / (2.0 - rule.weight));
    const auto isOff = [&](std::size_t i, double size) {
        return std::copysign(1.0, size) * days[i].residual > rule.smallest / 2.0;
    };
    const auto begin = std::upper_bound(days.begin(), days.end(), after,
                                        [](double day, const StationDay& other) { return day < other.day; });
    const auto first = static_cast<std::size_t>(begin - days.begin());
    double mean = 0.0;
    for (std::size_t i = first; i < days.size(); ++i) {
        mean += rule.weight * (days[i].residual - mean);
        if (i + 1 < fewest || std::abs(mean) <= limit) {
            continue;
        }
        const std::size_t began = likeliestStart(days, std::max(first, i - std::min(i, fewest)), i);
        // The first day is one of the shift in part.
        const std::size_t whole = std::min(began + 1, days.size() - 1);
        const double size = medianOfDays(days, whole, std::min(days.size(), whole + kDaysOfSize));
        int off = 0;
        for (std::size_t day = began; day <= i; ++day) {
            off += isOff(day, size) ? 1 : 0;
        }
        if (std::abs(size) >= rule.smallest && off >= rule.days) {
            return StationShift{days[i].day, days[began].day, size};
        }
    }
    return {};
}

} // namespace kxfleet
