// Alarms of a value of a wheel: when readings are beyond a limit, and until they are good again.
#include "fleet/alarms/alarms.h"

#include <algorithm>

namespace kxfleet {

std::vector<Alarm> alarmsOf(const std::vector<bool>& isBad, const AlarmRule& rule) {
    std::vector<Alarm> alarms;
    std::vector<std::size_t> bad; // among the last readings, since the last alarm was closed
    int good = 0; // in a row
    bool isOpen = false;
    for (std::size_t i = 0; i < isBad.size(); ++i) {
        good = isBad[i] ? 0 : good + 1;
        if (isOpen) {
            if (isBad[i]) {
                alarms.back().readings.push_back(i);
            } else if (good >= rule.good) {
                alarms.back().closed = i;
                isOpen = false;
                bad.clear();
            }
            continue;
        }
        if (isBad[i]) {
            bad.push_back(i);
        }
        std::erase_if(bad, [&](std::size_t b) { return b + static_cast<std::size_t>(rule.of) <= i; });
        if (isBad[i] && bad.size() >= static_cast<std::size_t>(rule.bad)) {
            alarms.push_back({i, std::nullopt, bad});
            isOpen = true;
        }
    }
    return alarms;
}

} // namespace kxfleet
