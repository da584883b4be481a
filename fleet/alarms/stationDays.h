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

/// From which readings of a wheel a further one is expected: of each station the first of a day, all of the same life.
struct ExpectationRule {
    double oldest = 60.0; ///< days; older ones do not count
    std::size_t most = 200; ///< its slope is that of so many of the last ones at all stations
    std::size_t fewest = 8; ///< with fewer nothing is expected
    double shortest = 7.0; ///< nor when they span fewer days
    std::size_t ofStation = 6; ///< its level is that of so many of the last ones at the same station, at least two
};

/// For each day on which the station measured, in ascending order, the median over its wheels of what it measured less what
/// was expected: the level of the wheel at this station, carried on with its slope, both by medians. Levels are those of
/// the station, so that neither what it always measures differently nor what happens to another one counts; slopes are of
/// more readings, so that an error of what is known of a shift hardly moves them. From the day on which one of `known`
/// began, readings are without it.
std::vector<StationDay> stationDays(const std::vector<WheelSeries>& wheels, int station,
                                    const std::vector<StationShift>& known = {}, const ExpectationRule& rule = {});

/// All shifts of the station in the order of time. Each is found with those before it taken off: what is expected of a
/// wheel follows a shift after some days and would seem to come back.
std::vector<StationShift> shiftsOfStation(const std::vector<WheelSeries>& wheels, int station,
                                          const ChartRule& chart = {}, const ExpectationRule& rule = {});

} // namespace kxfleet
