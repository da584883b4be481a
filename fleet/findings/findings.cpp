// What the readings of a measure say of wheels and sensors today.
#include "fleet/findings/findings.h"

#include "fleet/trend/lives.h"

#include <algorithm>

namespace kxfleet {

namespace {

/// Which readings are bad; none without anything to judge them by.
std::vector<bool> badReadings(const History& history, std::size_t wheel, const Readings& readings, const Limits& bounds,
                              bool byVerdicts) {
    std::vector<bool> isBad;
    if (byVerdicts) {
        const auto& verdicts = history.wheels[wheel].verdicts;
        if (std::any_of(verdicts.begin(), verdicts.end(), [](const auto& verdict) { return verdict.has_value(); })) {
            for (const auto& verdict : verdicts) {
                isBad.push_back(verdict == KxInspect::LimitVerdict::Alarm);
            }
        }
    } else if (bounds.low || bounds.high) {
        for (const Reading& reading : readings) {
            isBad.push_back(!bounds.holds(reading.value));
        }
    }
    return isBad;
}

} // namespace

Findings findingsOf(const History& history, const KxInspect::Limits& limits, const AlarmRule& rule,
                    const AnnounceRule& announce) {
    Findings findings;
    const bool byVerdicts = limits.measures.empty();
    for (std::size_t wheel = 0; wheel < history.wheels.size(); ++wheel) {
        const Limits bounds = alarmLimits(limits, history.measure, history.wheels[wheel].vehicleClass);
        const Readings readings = withoutShifts(history, wheel);
        const std::vector<bool> isBad = badReadings(history, wheel, readings, bounds, byVerdicts);
        findings.judged += isBad.empty() ? 0 : 1;
        bool isOpen = false;
        for (const Alarm& alarm : alarmsOf(isBad, rule)) {
            isOpen = !alarm.closed;
            findings.alarms.push_back({wheel, alarm});
        }
        if (isBad.empty() || isOpen || byVerdicts) {
            continue;
        }
        const Readings life = lastLife(readings, history.series[wheel].lifeStarts);
        if (const std::optional<DaysToLimit> days = announcedAfter(life, bounds, announce)) {
            findings.announcements.push_back({wheel, *days});
        }
    }
    std::stable_sort(findings.announcements.begin(), findings.announcements.end(),
                     [](const auto& a, const auto& b) { return a.daysToLimit.days < b.daysToLimit.days; });
    return findings;
}

} // namespace kxfleet
