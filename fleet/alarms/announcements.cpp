// Limits that a value will reach soon.
#include "fleet/alarms/announcements.h"

#include <algorithm>

namespace kxfleet {

std::optional<DaysToLimit> dueAfter(const Readings& life, const Limits& limits, const AnnounceRule& rule) {
    const Trend trend = trendOf(life, limits, rule.trend);
    if (!trend.daysToLimit || trend.daysToLimit->soonest > rule.early * rule.lead) {
        return {};
    }
    if (!trend.outliers.empty() && trend.outliers.back() + 1 == life.size()) {
        return {}; // the newest reading says something else: the wheel may just have been turned
    }
    const TheilSenLine& line = *trend.line;
    const bool moves = trend.daysToLimit->isLow ? line.slope + rule.certain * (line.high - line.slope) < 0.0
                                                : line.slope - rule.certain * (line.slope - line.low) > 0.0;
    const bool isThere = trend.daysToLimit->days <= 0.0;
    return moves || isThere ? trend.daysToLimit : std::nullopt;
}

std::optional<DaysToLimit> announcedAfter(const Readings& life, const Limits& limits, const AnnounceRule& rule) {
    const std::optional<DaysToLimit> due = dueAfter(life, limits, rule);
    if (!due) {
        return {};
    }
    int times = 1;
    const std::size_t before = std::min(life.size(), static_cast<std::size_t>(std::max(rule.again.of, 1)));
    for (std::size_t less = 1; less < before && times < rule.again.bad; ++less) {
        const Readings earlier(life.begin(), life.end() - static_cast<std::ptrdiff_t>(less));
        times += dueAfter(earlier, limits, rule) ? 1 : 0;
    }
    return times >= rule.again.bad ? due : std::nullopt;
}

} // namespace kxfleet
