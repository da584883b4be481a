// Where a value of a wheel is going, and when it reaches its limit.
#pragma once

#include "fleet/trend/reading.h"
#include "fleet/trend/theilSen.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kxfleet {

/// Between which a value may be; absent: unlimited to that side.
struct Limits {
    std::optional<double> low = {};
    std::optional<double> high = {};

    bool holds(double value) const { return !(low && value < *low) && !(high && value > *high); }
};

/// Which readings a trend is made of.
struct TrendRule {
    double window = 180.0; ///< days before the last reading; older ones are left out
    std::size_t fewest = 8; ///< with fewer readings there is no trend
    double shortest = 7.0; ///< nor when they span less, days
    std::size_t most = 1000; ///< of more readings only the last ones count
    /// When the newest readings leave the line by more than so many standard errors of their median, the value has changed
    /// its course: the line is then made of the newer half of the readings, and so on.
    double bend = 4.0;
    double ofNoise = 5.0; ///< readings farther off the line than so many standard deviations are marked as outliers
};

/// The days from the last reading until a value is beyond a limit, if it goes on as it did.
struct DaysToLimit {
    double days = 0.0; ///< 0: it is beyond already
    double soonest = 0.0; ///< lower end of the 95 % interval
    std::optional<double> latest = {}; ///< its upper end; absent when the value may never get there
    bool isLow = false; ///< which limit it is
};

/// What the readings of one life show.
struct Trend {
    std::size_t readings = 0; ///< that were looked at
    double from = 0.0; ///< day of the first of them
    double to = 0.0; ///< day of the last one
    std::optional<TheilSenLine> line = {}; ///< over the days before `to`, x = 0 being `to`; the slope is per day
    std::string reason = {}; ///< why there is no line, a clause; empty with one
    double level = 0.0; ///< of the line on the day `to`
    double levelHalfWidth = 0.0; ///< half of the 95 % interval of the level
    double noise = 0.0; ///< standard deviation of the readings about the line, by their median
    bool changedAtOnce = false; ///< two levels describe the readings better than the line does, see isStep()
    std::vector<std::size_t> outliers = {}; ///< indices into the readings that were given
    std::optional<DaysToLimit> daysToLimit = {};
    std::string daysReason = {}; ///< why it is absent, a clause; empty with it
};

/// The trend of the readings of one life, see lastLife(). Readings are independent of each other but for the line; what
/// they have in common, as the error of the poses of a station, is not in the intervals.
Trend trendOf(const Readings& readings, const Limits& limits, const TrendRule& rule = {});

} // namespace kxfleet
