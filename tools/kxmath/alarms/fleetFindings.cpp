// The findings that kxmath alarms tells.
#include "tools/kxmath/alarms/fleetFindings.h"

#include <algorithm>

namespace kxtool {

std::size_t FleetFindings::openAlarms() const {
    std::size_t open = 0;
    for (const MeasureFindings& m : measures) {
        open += static_cast<std::size_t>(std::count_if(m.found.alarms.begin(), m.found.alarms.end(),
                                                       [](const auto& alarm) { return !alarm.alarm.closed; }));
    }
    return open;
}

std::size_t FleetFindings::announcements() const {
    std::size_t all = 0;
    for (const MeasureFindings& m : measures) {
        all += m.found.announcements.size();
    }
    return all;
}

std::size_t FleetFindings::judged() const {
    std::size_t all = 0;
    for (const MeasureFindings& m : measures) {
        all += m.found.judged;
    }
    return all;
}

FleetFindings findingsOf(kxfleet::Store& store, const std::vector<KxInspect::MeasureInfo>& measures,
                         const KxInspect::Limits& limits, const FindingRules& rules) {
    FleetFindings all;
    const kxfleet::HistoryReader reader(store);
    for (const KxInspect::MeasureInfo& measure : measures) {
        kxfleet::History history = reader.read(measure.name);
        for (const kxfleet::WheelSeries& series : history.series) {
            all.lastDay = std::max(all.lastDay, series.readings.back().day);
        }
        kxfleet::Findings found = kxfleet::findingsOf(history, limits, rules.alarm, rules.announce);
        all.measures.push_back({measure, std::move(history), std::move(found)});
    }
    for (const MeasureFindings& m : all.measures) {
        for (std::size_t place = 0; place < m.history.places.size(); ++place) {
            for (const kxfleet::StationShift& shift : m.history.shifts[place]) {
                if (shift.day >= all.lastDay - rules.recent) {
                    all.shifts.push_back({m.measure.name, m.history.places[place], shift});
                }
            }
        }
    }
    return all;
}

} // namespace kxtool
