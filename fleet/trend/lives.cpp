// The lives of a wheel: what lies between two re-profilings, or between a new wheel and the next.
#include "fleet/trend/lives.h"

#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace kxfleet {

namespace {

double noiseOf(const Readings& readings) {
    std::vector<double> differences;
    for (std::size_t i = 1; i < readings.size(); ++i) {
        differences.push_back(readings[i].value - readings[i - 1].value);
    }
    return differences.empty() ? 0.0 : robustDeviation(differences) / std::sqrt(2.0);
}

double medianOfValues(Readings::const_iterator first, Readings::const_iterator last) {
    std::vector<double> values;
    for (; first != last; ++first) {
        values.push_back(first->value);
    }
    return medianOf(std::move(values));
}

} // namespace

std::vector<double> stepsUp(const Readings& readings, const StepRule& rule) {
    const double least = std::max(rule.smallest, rule.ofNoise * noiseOf(readings));
    const auto width = static_cast<std::ptrdiff_t>(std::max(rule.readings, 1));
    const auto jump = [](Readings::const_iterator at) { return at->value - std::prev(at)->value; };
    // Medians show one step at several readings; it is where the value itself jumps.
    const auto jumpsMost = [&](Readings::const_iterator at) {
        const auto first = std::max(at - width + 1, readings.begin() + 1);
        const auto last = std::min(at + width, readings.end());
        for (auto other = first; other != last; ++other) {
            if (jump(other) > jump(at) || (other < at && jump(other) == jump(at))) {
                return false;
            }
        }
        return true;
    };
    std::vector<double> days;
    for (auto i = width; i + width <= std::ssize(readings); ++i) {
        const auto at = readings.begin() + i;
        const double step = medianOfValues(at, at + width) - medianOfValues(at - width, at);
        if (step > least && jumpsMost(at)) {
            days.push_back(at->day);
        }
    }
    return days;
}

std::vector<double> merged(const std::vector<double>& days, const std::vector<double>& others, double apart) {
    std::vector<double> all;
    std::merge(days.begin(), days.end(), others.begin(), others.end(), std::back_inserter(all));
    std::vector<double> kept;
    for (const double day : all) {
        if (kept.empty() || day - kept.back() > apart) {
            kept.push_back(day);
        }
    }
    return kept;
}

Readings lastLife(const Readings& readings, const std::vector<double>& starts) {
    if (readings.empty()) {
        return {};
    }
    const auto next = std::upper_bound(starts.begin(), starts.end(), readings.back().day);
    if (next == starts.begin()) {
        return readings;
    }
    const double start = *std::prev(next);
    const auto first = std::find_if(readings.begin(), readings.end(), [&](const Reading& r) { return r.day >= start; });
    return {first, readings.end()};
}

} // namespace kxfleet
