// Finds when a station as a whole begins to measure differently.
#pragma once

#include <optional>
#include <vector>

namespace kxfleet {

/// What a station measured on one day beside what was expected: the median over all its wheels.
struct StationDay {
    double day = 0.0; ///< in days since 1970-01-01 00:00 UTC, the start of the day
    double residual = 0.0; ///< median of measured less expected, in the unit of the value
    int wheels = 0; ///< how many there were
};

/// An EWMA chart (S. W. Roberts, Control Chart Tests Based on Geometric Moving Averages, 1959).
struct ChartRule {
    double weight = 0.2; ///< of the newest day
    int days = 2; ///< that must be off to the same side since it began: one odd day is no shift
    double ofNoise = 5.0; ///< the mean is beyond its limit at so many of its standard deviations
    double smallest = 0.08; ///< shifts below it are not named, in the unit of the value
    int fewestWheels = 10; ///< days with fewer are left out
    int fewestDays = 10; ///< from which the noise of a day is known
};

/// A shift of all wheels that a station measured: its sensors, not the wheels.
struct StationShift {
    double day = 0.0; ///< on which the chart left its limits
    double began = 0.0; ///< the day on which it most likely began
    double size = 0.0; ///< median of the residuals of the first whole days since then, as far as they are known
};

/// The first shift of a station, whose days are in ascending order. What was expected is what the station itself measured
/// before, so that days are off by nothing but noise until then. That noise is taken from differences of neighbouring days,
/// so that a shift does not raise it.
/// @param after shifts that were named up to this day are known: the chart begins behind it
std::optional<StationShift> firstShift(const std::vector<StationDay>& days, double after, const ChartRule& rule = {});

} // namespace kxfleet
