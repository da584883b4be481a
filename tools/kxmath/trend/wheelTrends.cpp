// The trends that kxmath trend tells.
#include "tools/kxmath/trend/wheelTrends.h"

#include "fleet/alarms/alarms.h"
#include "fleet/trend/lives.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace kxtool {

namespace {

WheelTrend trendOfWheel(const kxfleet::History& history, std::size_t i, const KxInspect::MeasureInfo& measure,
                        const KxInspect::Limits& limits) {
    WheelTrend result;
    result.measure = measure;
    result.wheel = history.wheels[i];
    result.readings = withoutShifts(history, i);
    result.limits = kxfleet::alarmLimits(limits, measure.name, result.wheel.vehicleClass);
    const std::vector<double>& starts = history.series[i].lifeStarts;
    const kxfleet::Readings life = kxfleet::lastLife(result.readings, starts);
    result.lifeBegins = result.readings.size() - life.size();
    result.lives = 1 + starts.size();
    std::vector<bool> isBad;
    for (const kxfleet::Reading& reading : life) {
        isBad.push_back(!result.limits.holds(reading.value));
    }
    const std::vector<kxfleet::Alarm> alarms = kxfleet::alarmsOf(isBad);
    result.isBeyond = !alarms.empty() && !alarms.back().closed;
    result.trend = kxfleet::trendOf(life, result.limits);
    for (std::size_t& outlier : result.trend.outliers) {
        outlier += result.lifeBegins;
    }
    return result;
}

double urgency(const WheelTrend& trend) {
    if (trend.isBeyond) {
        return 0.0;
    }
    return trend.trend.daysToLimit ? trend.trend.daysToLimit->days : std::numeric_limits<double>::infinity();
}

} // namespace

FleetTrends trendsOf(kxfleet::Store& store, const std::vector<KxInspect::MeasureInfo>& measures,
                     const std::string& vehicle, const KxInspect::Limits& limits) {
    FleetTrends all;
    const kxfleet::HistoryReader reader(store);
    for (const KxInspect::MeasureInfo& measure : measures) {
        const kxfleet::History history = reader.read(measure.name);
        for (std::size_t place = 0; place < history.places.size(); ++place) {
            for (const kxfleet::StationShift& shift : history.shifts[place]) {
                all.shifts.push_back({measure.name, history.places[place], shift});
            }
        }
        for (std::size_t i = 0; i < history.wheels.size(); ++i) {
            if (vehicle.empty() || history.wheels[i].wheel.vehicle == vehicle) {
                all.wheels.push_back(trendOfWheel(history, i, measure, limits));
            }
        }
    }
    std::stable_sort(all.wheels.begin(), all.wheels.end(), [](const WheelTrend& a, const WheelTrend& b) {
        const double soonerA = urgency(a);
        const double soonerB = urgency(b);
        return std::tie(soonerA, a.wheel.wheel) < std::tie(soonerB, b.wheel.wheel);
    });
    return all;
}

} // namespace kxtool
