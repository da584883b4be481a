// The values of wheels over their passes, out of a store.
#include "fleet/history/history.h"

#include "fleet/trend/lives.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>

namespace kxfleet {

namespace {

constexpr double kSameTurning = 3.0; // days; both wheels of an axle rarely show their new life in the same pass

double dayOf(std::int64_t milliseconds) {
    constexpr double kMillisecondsOfDay = 86400000.0;
    return static_cast<double>(milliseconds) / kMillisecondsOfDay;
}

/// The readings of a measure by wheel; without lives and shifts.
History readingsOf(Store& store, const std::string& measure) {
    History history;
    history.measure = measure;
    std::map<MeasuringPlace, int> places;
    std::map<StoredWheel, std::size_t> wheels;
    store.series(measure, {}, [&](const StoredReading& r) {
        const auto [place, isNewPlace] =
            places.try_emplace({r.station, r.trackSide}, static_cast<int>(history.places.size()));
        if (isNewPlace) {
            history.places.push_back(place->first);
        }
        const auto [wheel, isNewWheel] = wheels.try_emplace(r.wheel, history.wheels.size());
        if (isNewWheel) {
            history.wheels.push_back({r.wheel, {}, {}});
            history.series.emplace_back();
        }
        HistoryWheel& of = history.wheels[wheel->second];
        of.vehicleClass = r.vehicleClass.empty() ? of.vehicleClass : r.vehicleClass;
        of.verdicts.push_back(r.verdict);
        history.series[wheel->second].readings.push_back({dayOf(r.milliseconds), r.value, place->second});
    });
    // Sides come as they passed.
    History sorted{history.measure, history.places, {}, {}, {}};
    for (const auto& [wheel, at] : wheels) {
        sorted.wheels.push_back(std::move(history.wheels[at]));
        sorted.series.push_back(std::move(history.series[at]));
    }
    return sorted;
}

/// The series without the shifts of all places but one.
std::vector<WheelSeries> withoutShiftsOfOthers(const History& history, int place) {
    std::vector<WheelSeries> series = history.series;
    for (WheelSeries& wheel : series) {
        for (Reading& reading : wheel.readings) {
            if (reading.station != place) {
                reading.value = withoutShifts(reading, history.shifts[static_cast<std::size_t>(reading.station)],
                                              std::numeric_limits<double>::infinity());
            }
        }
    }
    return series;
}

void addShifts(History& history) {
    history.shifts.clear();
    for (std::size_t place = 0; place < history.places.size(); ++place) {
        history.shifts.push_back(shiftsOfStation(history.series, static_cast<int>(place)));
    }
    // Slopes are of the readings at all places: where several shifted at nearly the same time, each shows by itself only
    // when the others are known.
    if (std::all_of(history.shifts.begin(), history.shifts.end(), [](const auto& shifts) { return shifts.empty(); })) {
        return;
    }
    std::vector<std::vector<StationShift>> again;
    for (std::size_t place = 0; place < history.places.size(); ++place) {
        const auto at = static_cast<int>(place);
        again.push_back(shiftsOfStation(withoutShiftsOfOthers(history, at), at));
    }
    history.shifts = std::move(again);
}

} // namespace

HistoryReader::HistoryReader(Store& store) : store_(&store) {
    for (const char* const measure : {"flangeThickness", "diameter"}) {
        // A shift of sensors looks like a step up, and lives are needed to find shifts: first without.
        History history = readingsOf(store, measure);
        for (WheelSeries& series : history.series) {
            series.lifeStarts = stepsUp(series.readings, {});
        }
        addShifts(history);
        addStarts(history);
    }
}

void HistoryReader::addStarts(const History& history) {
    for (std::size_t i = 0; i < history.wheels.size(); ++i) {
        const StoredWheel& wheel = history.wheels[i].wheel;
        std::vector<double>& of = starts_[{wheel.vehicle, wheel.axle}];
        of = merged(of, stepsUp(withoutShifts(history, i), {}), kSameTurning);
    }
}

std::vector<double> HistoryReader::startsOf(const StoredWheel& wheel) const {
    const auto found = starts_.find({wheel.vehicle, wheel.axle});
    return found != starts_.end() ? found->second : std::vector<double>();
}

History HistoryReader::read(const std::string& measure) const {
    History history = readingsOf(*store_, measure);
    for (std::size_t i = 0; i < history.wheels.size(); ++i) {
        history.series[i].lifeStarts = startsOf(history.wheels[i].wheel);
    }
    addShifts(history);
    return history;
}

double withoutShifts(const Reading& reading, const std::vector<StationShift>& shifts, double on) {
    double value = reading.value;
    for (const StationShift& shift : shifts) {
        value -= shift.day <= on && reading.day >= shift.began ? shift.size : 0.0;
    }
    return value;
}

Readings withoutShifts(const History& history, std::size_t wheel) {
    Readings readings = history.series[wheel].readings;
    if (!history.shifts.empty()) {
        for (Reading& reading : readings) {
            reading.value = withoutShifts(reading, history.shifts[static_cast<std::size_t>(reading.station)],
                                          std::numeric_limits<double>::infinity());
        }
    }
    return readings;
}

Limits alarmLimits(const KxInspect::Limits& limits, const std::string& measure, const std::string& vehicleClass) {
    const auto isForOneClass = [&](const KxInspect::MeasureLimits& of) {
        return of.measure == measure && !of.vehicleClass.empty();
    };
    if (vehicleClass.empty() && std::any_of(limits.measures.begin(), limits.measures.end(), isForOneClass)) {
        return {};
    }
    const KxInspect::LimitBounds* const bounds = KxInspect::boundsOf(limits, measure, vehicleClass);
    return bounds != nullptr ? Limits{bounds->alarmLow, bounds->alarmHigh} : Limits{};
}

} // namespace kxfleet
