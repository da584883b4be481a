// The lives of a wheel: what lies between two re-profilings, or between a new wheel and the next.
#include "fleet/trend/lives.h"

#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <utility>

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

/// How much the value steps up at `at` as each of the stations sees it by itself: medians of up to `width` readings before
/// and behind.
std::vector<double> stepsOfStations(const Readings& readings, Readings::const_iterator at, std::size_t width) {
    struct Sides {
        std::vector<double> before, behind;
    };
    std::map<int, Sides> stations;
    // Behind a station that is rarely passed there is nothing for a long time: so many readings must do.
    const auto reach = static_cast<std::ptrdiff_t>(10 * width);
    const auto first = at - std::min(reach, at - readings.begin());
    const auto last = at + std::min(reach, readings.end() - at);
    for (auto before = at; before-- != first;) {
        std::vector<double>& values = stations[before->station].before;
        if (values.size() < width) {
            values.push_back(before->value);
        }
    }
    for (auto behind = at; behind != last; ++behind) {
        std::vector<double>& values = stations[behind->station].behind;
        if (values.size() < width) {
            values.push_back(behind->value);
        }
    }
    std::vector<double> steps;
    for (auto& [station, sides] : stations) {
        if (!sides.before.empty() && !sides.behind.empty()) {
            steps.push_back(medianOf(std::move(sides.behind)) - medianOf(std::move(sides.before)));
        }
    }
    return steps;
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
    // Sensors of one station that measure differently than others, or than before, make no new life.
    const auto mostStationsStep = [&](Readings::const_iterator at) {
        const std::vector<double> steps = stepsOfStations(readings, at, static_cast<std::size_t>(width));
        const auto up = std::count_if(steps.begin(), steps.end(), [&](double step) { return step > least / 2.0; });
        return steps.empty() || 2 * up > std::ssize(steps);
    };
    std::vector<double> days;
    for (auto i = width; i + width <= std::ssize(readings); ++i) {
        const auto at = readings.begin() + i;
        const double step = medianOfValues(at, at + width) - medianOfValues(at - width, at);
        if (step > least && jumpsMost(at) && mostStationsStep(at)) {
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
