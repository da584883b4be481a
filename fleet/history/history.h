// The values of wheels over their passes, out of a store.
#pragma once

#include "fleet/alarms/stationDays.h"
#include "fleet/store/store.h"
#include "fleet/trend/trend.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kxfleet {

/// Where readings are taken: the sensors of one side of the track at a station.
struct MeasuringPlace {
    std::string station = {}; ///< empty where it was not given
    std::string trackSide = {}; ///< see StoredReading

    auto operator<=>(const MeasuringPlace&) const = default;
};

/// What is known of a wheel besides its readings.
struct HistoryWheel {
    StoredWheel wheel = {};
    std::string vehicleClass = {}; ///< the last one that was known; empty where it never was
    std::vector<std::optional<KxInspect::LimitVerdict>> verdicts = {}; ///< of its readings, in parallel with them
};

/// One measure of all wheels.
struct History {
    std::string measure = {};
    std::vector<MeasuringPlace> places = {}; ///< Reading::station is an index into them
    std::vector<HistoryWheel> wheels = {}; ///< ascending
    std::vector<WheelSeries> series = {}; ///< in parallel with `wheels`
    std::vector<std::vector<StationShift>> shifts = {}; ///< of the sensors, in parallel with `places`
};

/// Reads measures one after the other.
class HistoryReader {
public:
    /// Finds the lives of all wheels. A new life begins where the flange gets thicker or the diameter larger, on one wheel
    /// of an axle for both: wheelsets are turned as a whole.
    explicit HistoryReader(Store& store);

    /// All readings of a measure, with the lives of their wheels and the shifts of the sensors; these show in the wheels of
    /// all vehicles only. Throws what Store::series() throws.
    History read(const std::string& measure) const;

private:
    using Axle = std::pair<std::string, std::int64_t>; ///< vehicle and number

    void addStarts(const History& history);
    std::vector<double> startsOf(const StoredWheel& wheel) const;

    Store* store_;
    std::map<Axle, std::vector<double>> starts_; ///< days on which lives begin
};

/// A reading without the shifts of its place that were named on the day `on` or before.
double withoutShifts(const Reading& reading, const std::vector<StationShift>& shifts, double on);

/// The readings of a wheel, all without the shifts that are known today.
Readings withoutShifts(const History& history, std::size_t wheel);

/// The bounds beyond which there is an alarm for a vehicle of a class; both absent without limits, and where limits differ
/// by class and the class is not known.
Limits alarmLimits(const KxInspect::Limits& limits, const std::string& measure, const std::string& vehicleClass);

} // namespace kxfleet
