// What a station measures beside what its wheels let expect.
#include "fleet/alarms/stationDays.h"

#include "fleet/trend/quantiles.h"
#include "fleet/trend/step.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <optional>

namespace kxfleet {

namespace {

double withoutShifts(const Reading& reading, const std::vector<StationShift>& known) {
    double value = reading.value;
    for (const StationShift& shift : known) {
        value -= reading.day >= shift.began ? shift.size : 0.0;
    }
    return value;
}

/// The value on `day` of a line by medians: its slope is the median of those between the first and the second half of the
/// readings (H. Theil, A rank-invariant method of linear and polynomial regression analysis, 1950). None where the readings
/// changed at once and no line holds.
std::optional<double> expected(const std::deque<Reading>& before, double day) {
    const std::size_t half = before.size() / 2;
    const std::size_t second = before.size() - half;
    std::vector<double> slopes;
    for (std::size_t i = 0; i < half; ++i) {
        const double days = before[second + i].day - before[i].day;
        if (days > 0.0) {
            slopes.push_back((before[second + i].value - before[i].value) / days);
        }
    }
    const double slope = slopes.empty() ? 0.0 : medianOf(std::move(slopes));
    std::vector<double> values;
    values.reserve(before.size());
    for (const Reading& reading : before) {
        values.push_back(reading.value + slope * (day - reading.day));
    }
    const double level = medianOf(values);
    std::vector<double> measured;
    for (std::size_t i = 0; i < values.size(); ++i) {
        measured.push_back(before[i].value);
        values[i] -= level;
    }
    return isStep(measured, values) ? std::nullopt : std::optional(level);
}

} // namespace

std::vector<StationDay> stationDays(const std::vector<WheelSeries>& wheels, int station,
                                    const std::vector<StationShift>& known, const ExpectationRule& rule) {
    std::map<double, std::vector<double>> residuals; // by day
    for (const WheelSeries& wheel : wheels) {
        std::deque<Reading> before;
        auto life = wheel.lifeStarts.begin();
        for (const Reading& reading : wheel.readings) {
            if (reading.station != station) {
                continue;
            }
            for (; life != wheel.lifeStarts.end() && *life <= reading.day; ++life) {
                before.clear();
            }
            while (!before.empty() && before.front().day < reading.day - rule.oldest) {
                before.pop_front();
            }
            const double value = withoutShifts(reading, known);
            const std::optional<double> level =
                before.size() >= rule.fewest ? expected(before, reading.day) : std::nullopt;
            if (level) {
                residuals[std::floor(reading.day)].push_back(value - *level);
            }
            before.push_back({reading.day, value, station});
            if (before.size() > rule.most) {
                before.pop_front();
            }
        }
    }
    std::vector<StationDay> days;
    for (auto& [day, ofWheels] : residuals) {
        const auto count = static_cast<int>(ofWheels.size());
        days.push_back({day, medianOf(std::move(ofWheels)), count});
    }
    return days;
}

std::vector<StationShift> shiftsOfStation(const std::vector<WheelSeries>& wheels, int station, const ChartRule& chart,
                                          const ExpectationRule& rule) {
    std::vector<StationShift> known;
    while (true) { // ends: each shift is later than the one before
        const std::vector<StationShift> found = shiftsOf(stationDays(wheels, station, known, rule), chart);
        const auto next = std::find_if(found.begin(), found.end(), [&](const StationShift& shift) {
            return known.empty() || shift.day > known.back().day;
        });
        if (next == found.end()) {
            return known;
        }
        known.push_back(*next);
    }
}

} // namespace kxfleet
