// What a station measures beside what its wheels let expect.
#include "fleet/alarms/stationDays.h"

#include "fleet/trend/quantiles.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
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

/// The median of the slopes between the first and the second half of the readings (H. Theil, A rank-invariant method of
/// linear and polynomial regression analysis, 1950), each between two of the same station; per day.
double slopeOf(const std::deque<Reading>& readings) {
    const auto middle = readings.begin() + std::ssize(readings) / 2;
    std::map<int, std::deque<Reading>::const_iterator> next; // of each station in the second half
    std::vector<double> slopes;
    for (auto first = readings.begin(); first != middle; ++first) {
        auto& second = next.try_emplace(first->station, middle).first->second;
        second = std::find_if(second, readings.end(), [&](const Reading& r) { return r.station == first->station; });
        if (second == readings.end()) {
            continue;
        }
        if (second->day > first->day) {
            slopes.push_back((second->value - first->value) / (second->day - first->day));
        }
        ++second;
    }
    return slopes.empty() ? 0.0 : medianOf(std::move(slopes));
}

/// The last readings of a wheel before one that is expected.
class Before {
public:
    Before(int station, const ExpectationRule& rule) : station_(station), rule_(rule) {}

    void beginLife() {
        ofAll_.clear();
        ofStation_.clear();
        lastDay_.clear();
    }
    void add(const Reading& reading) {
        const double day = std::floor(reading.day);
        if (const auto [last, isFirst] = lastDay_.try_emplace(reading.station, day); !isFirst) {
            if (last->second == day) {
                return;
            }
            last->second = day;
        }
        add(ofAll_, reading, rule_.most);
        if (reading.station == station_) {
            add(ofStation_, reading, rule_.ofStation);
        }
    }
    /// What the station will measure on a day.
    std::optional<double> expected(double day) {
        drop(ofAll_, day);
        drop(ofStation_, day);
        if (ofAll_.size() < rule_.fewest || ofStation_.size() < 2 ||
            ofAll_.back().day - ofAll_.front().day < rule_.shortest) {
            return std::nullopt;
        }
        const double slope = slopeOf(ofAll_);
        std::vector<double> values;
        for (const Reading& reading : ofStation_) {
            values.push_back(reading.value + slope * (day - reading.day));
        }
        return medianOf(std::move(values));
    }

private:
    static void add(std::deque<Reading>& readings, const Reading& reading, std::size_t most) {
        readings.push_back(reading);
        if (readings.size() > most) {
            readings.pop_front();
        }
    }
    void drop(std::deque<Reading>& readings, double day) const {
        while (!readings.empty() && readings.front().day < day - rule_.oldest) {
            readings.pop_front();
        }
    }

    int station_;
    ExpectationRule rule_;
    std::deque<Reading> ofAll_;
    std::deque<Reading> ofStation_;
    std::map<int, double> lastDay_; ///< by station
};

} // namespace

std::vector<StationDay> stationDays(const std::vector<WheelSeries>& wheels, int station,
                                    const std::vector<StationShift>& known, const ExpectationRule& rule) {
    std::map<double, std::vector<double>> residuals; // by day
    for (const WheelSeries& wheel : wheels) {
        Before before(station, rule);
        auto life = wheel.lifeStarts.begin();
        for (Reading reading : wheel.readings) {
            for (; life != wheel.lifeStarts.end() && *life <= reading.day; ++life) {
                before.beginLife();
            }
            if (reading.station == station) {
                reading.value = withoutShifts(reading, known);
                if (const std::optional<double> expected = before.expected(reading.day)) {
                    residuals[std::floor(reading.day)].push_back(reading.value - *expected);
                }
            }
            before.add(reading);
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
    double after = -std::numeric_limits<double>::infinity();
    while (const std::optional<StationShift> next =
               firstShift(stationDays(wheels, station, known, rule), after, chart)) {
        known.push_back(*next);
        after = next->day; // ends: each is later than the one before
    }
    return known;
}

} // namespace kxfleet
