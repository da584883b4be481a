// What a station measures beside what its wheels let expect.
#pragma once

#include "fleet/alarms/controlChart.h"
#include "fleet/trend/reading.h"

#include <vector>

namespace kxfleet {

/// The readings of one value of a wheel at all stations.
struct WheelSeries {
    Readings readings = {};
    std::vector<double> lifeStarts = {}; ///< see stepsUp()
};

/// From which readings a further one is expected.
struct ExpectationRule {
    std::size_t fewest = 4; ///< readings of the wheel at the same station, in the same life, that do not change at once
    std::size_t most = 12; ///< only the last ones before count
    double oldest = 120.0; ///< days; older ones do not
};

/// For each day on which the station measured, in ascending order, the median over its wheels of what it measured less what
/// was expected: a line through the readings of the wheel before that day, by medians. Each station is compared with
/// itself, so that neither what it always measures differently nor what happens to another one counts. From the day on
/// which one of `known` began, readings and expectations are without it.
std::vector<StationDay> stationDays(const std::vector<WheelSeries>& wheels, int station,
                                    const std::vector<StationShift>& known = {}, const ExpectationRule& rule = {});

/// All shifts of the station in the order of time. Each is found with those before it taken off: what is expected of a
/// wheel follows a shift after some days and would seem to come back.
std::vector<StationShift> shiftsOfStation(const std::vector<WheelSeries>& wheels, int station,
                                          const ChartRule& chart = {}, const ExpectationRule& rule = {});

} // namespace kxfleet
