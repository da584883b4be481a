// What the readings of a measure say of wheels and sensors today.
#pragma once

#include "fleet/alarms/announcements.h"
#include "fleet/history/history.h"

#include <cstddef>
#include <vector>

namespace kxfleet {

/// An alarm of a wheel.
struct WheelAlarm {
    std::size_t wheel = 0; ///< index into the wheels of the history
    Alarm alarm = {}; ///< its indices are those of the readings of the wheel
};

/// A limit that a wheel will reach soon, and has no open alarm for.
struct WheelAnnouncement {
    std::size_t wheel = 0;
    DaysToLimit daysToLimit = {};
};

/// The findings of one measure.
struct Findings {
    std::vector<WheelAlarm> alarms = {}; ///< open and closed, by wheel and then by time
    std::vector<WheelAnnouncement> announcements = {}; ///< those that are due soonest first
    std::size_t judged = 0; ///< wheels with a reading that has a limit or a verdict
};

/// A reading is bad when it is beyond the alarm limit of its wheel, shifts of sensors taken off. A store whose passes were
/// measured with limits needs none here: without limits for any measure a reading is bad when its verdict is, and nothing
/// is announced.
Findings findingsOf(const History& history, const KxInspect::Limits& limits, const AlarmRule& rule = {},
                    const AnnounceRule& announce = {});

} // namespace kxfleet
