// The lives of a wheel: what lies between two re-profilings, or between a new wheel and the next.
#pragma once

#include "fleet/trend/reading.h"

#include <vector>

namespace kxfleet {

/// When the value of a wheel steps up, as the thickness of its flange does when the wheel is turned, or its diameter when
/// it is replaced.
struct StepRule {
    double smallest = 0.5; ///< steps up to here are none, in the unit of the value
    double ofNoise = 6.0; ///< nor are those up to so many standard deviations of the noise
    int readings = 3; ///< as many before and behind a step show it, by their median; fewer than this behind it: not yet
};

/// The days of the first readings of all lives but the first, in ascending order. The noise is taken from the differences
/// of neighbouring readings, a single wrong reading is no step, and of steps that are nearer to each other than
/// `rule.readings` the largest counts. Most of the stations that see the wheel before and behind must show it, each by
/// itself.
std::vector<double> stepsUp(const Readings& readings, const StepRule& rule);

/// Both in ascending order, into one; of days that are at most `apart` from each other the first counts.
std::vector<double> merged(const std::vector<double>& days, const std::vector<double>& others, double apart);

/// The readings of the last life: those from the last of `starts` on that is not later than the last reading.
Readings lastLife(const Readings& readings, const std::vector<double>& starts);

} // namespace kxfleet
