// Alarms of a value of a wheel: when readings are beyond a limit, and until they are good again.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace kxfleet {

/// When an alarm opens and closes.
struct AlarmRule {
    int bad = 2; ///< an alarm opens when so many
    int of = 3; ///< of so many last readings are bad
    int good = 3; ///< it closes after so many good ones without a bad one between them
};

/// Indices are those of the readings.
struct Alarm {
    std::size_t opened = 0; ///< the reading that opened it
    std::optional<std::size_t> closed = {}; ///< the reading that closed it; absent while it is open
    std::vector<std::size_t> readings = {}; ///< the bad readings, those before `opened` that made it open among them
};

/// The alarms of readings in the order of time. A bad reading counts for one alarm only. `rule.bad` is from 1 to `rule.of`,
/// `rule.good` from 1.
std::vector<Alarm> alarmsOf(const std::vector<bool>& isBad, const AlarmRule& rule = {});

} // namespace kxfleet
