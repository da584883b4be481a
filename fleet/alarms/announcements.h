// Limits that a value will reach soon.
#pragma once

#include "fleet/alarms/alarms.h"
#include "fleet/trend/trend.h"

#include <optional>

namespace kxfleet {

/// When a limit is announced.
struct AnnounceRule {
    double lead = 14.0; ///< days before
    /// Told from so many times the lead on: several readings must agree before a limit is announced, and values do not
    /// always keep their pace.
    double early = 2.0;
    /// A slope moves towards a limit when it is so many times the half of its 95 % interval from none: trends are asked after
    /// each reading, and 1.68 times is an interval of 99.9 %.
    double certain = 1.68;
    /// Of few readings, so that a value that begins to move is seen soon; of no more than the last ones, because nothing
    /// further ahead than `lead` is asked.
    TrendRule trend = {.window = 90.0, .fewest = 5, .shortest = 3.0, .most = 40};
    AlarmRule again = {}; ///< a trend of so many of the last readings must say so
};

/// The limit that is due after these readings of one life: the value moves towards it, more than chance explains, and its
/// trend reaches it within `early` times the lead at the soonest, or has reached it.
std::optional<DaysToLimit> dueAfter(const Readings& life, const Limits& limits, const AnnounceRule& rule = {});

/// What is announced after the last of these readings: as dueAfter() tells, and the trends of the readings before it told
/// so often enough.
std::optional<DaysToLimit> announcedAfter(const Readings& life, const Limits& limits, const AnnounceRule& rule = {});

} // namespace kxfleet
