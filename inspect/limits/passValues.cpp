// The values of a pass by the names of their measures. A new measure of a wheel or an axle is a line in a table here.
#include "inspect/limits/passValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <variant>

namespace KxInspect::detail {

std::optional<TrackSide> trackSideOf(const PassResult& result, std::size_t side) {
    const std::string key = "SENSOR" + std::to_string(result.sides[side].sensor) + "/side";
    for (const SettingValue& value : result.identity.settings.values) {
        const std::string* const word = std::get_if<std::string>(&value.value);
        for (const TrackSide known : {TrackSide::Left, TrackSide::Right}) {
            if (value.key == key && word != nullptr && *word == textOf(known)) {
                return known;
            }
        }
    }
    return {};
}

const PassWheelMeasures* measuredWheel(const PassResult& result, std::size_t pair, std::size_t side) {
    const std::optional<TrackSide> trackSide = trackSideOf(result, side);
    const auto isMeant = [&](const PassWheelMeasures& wheel) {
        return wheel.pair == static_cast<int>(pair) + 1 && trackSide == wheel.side;
    };
    const auto wheel = std::find_if(result.wheels.begin(), result.wheels.end(), isMeant);
    return wheel != result.wheels.end() ? &*wheel : nullptr;
}

namespace {

constexpr const char* kNotSeen = "the sensor did not see the wheel";
constexpr const char* kNotAsked = "defects were not looked for";

/// A value with its interval, or the reason why there is none.
struct Found {
    std::optional<double> value = {};
    Interval interval = {};
    std::string reason = {};
};

Found found(float value, const Interval& interval, const std::string& reason) {
    if (std::isfinite(value)) {
        return {static_cast<double>(value), interval, {}};
    }
    return {{}, {}, reason.empty() ? "it was not measured" : reason};
}

Found backToBack(const WheelPair& pair) {
    return found(pair.distance, pair.interval, pair.reason);
}

Found yaw(const WheelPair& pair) {
    return found(pair.yaw, pair.yawInterval, pair.yawReason);
}

Found roundness(const PassWheel& wheel, bool isAsked) {
    if (!wheel.roundness) {
        return {{}, {}, isAsked ? wheel.roundnessReason : kNotAsked};
    }
    return found(wheel.roundness->largest, wheel.roundness->largestInterval, wheel.roundnessReason);
}

/// A tread without a verdict has no value either: the few profiles that were judged may be sound ones.
Found treadDeviation(const PassWheel& wheel, bool isAsked) {
    if (!isAsked || !wheel.defects || !wheel.defects->isDefective) {
        return {{}, {}, isAsked ? wheel.defectsReason : kNotAsked};
    }
    return found(wheel.defects->largest, {}, wheel.defectsReason);
}

const std::map<std::string, Found (*)(const WheelPair&)>& axleMeasures() {
    static const std::map<std::string, Found (*)(const WheelPair&)> measures = {{"backToBack", backToBack},
                                                                                {"yaw", yaw}};
    return measures;
}

const std::map<std::string, Found (*)(const PassWheel&, bool)>& wheelMeasures() {
    static const std::map<std::string, Found (*)(const PassWheel&, bool)> measures = {
        {"roundness", roundness}, {"treadDeviation", treadDeviation}};
    return measures;
}

/// A measure of the cross-section of a wheel.
Found valueOfSection(const PassResult& result, PassMeasure measure, std::size_t pair, std::size_t side) {
    if (const PassWheelMeasures* const wheel = measuredWheel(result, pair, side)) {
        const PassValue& value = (*wheel)[measure];
        return found(value.value.value_or(std::numeric_limits<float>::quiet_NaN()), value.interval, value.reason);
    }
    return {{}, {}, trackSideOf(result, side) ? kNotSeen : "the settings give no side and pose of the sensors"};
}

double posesOf(const PassResult& result, const Assessment& diameter) {
    const PassWheelMeasures* const wheel =
        measuredWheel(result, static_cast<std::size_t>(diameter.pair) - 1, static_cast<std::size_t>(diameter.side) - 1);
    return wheel != nullptr ? static_cast<double>((*wheel)[PassMeasure::Diameter].byPoses.value_or(0.0f)) : 0.0;
}

Found valueOfWheel(const PassResult& result, const std::string& measure, std::size_t pair, std::size_t side) {
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        if (measure == info.key) {
            return valueOfSection(result, info.measure, pair, side);
        }
    }
    const auto extract = wheelMeasures().find(measure);
    const PassWheel* const wheel = result.wheelOf(result.pairs[pair], side);
    if (extract == wheelMeasures().end()) {
        return {{}, {}, "it is not measured"};
    }
    return wheel != nullptr ? extract->second(*wheel, result.defectLimits.has_value()) : Found{{}, {}, kNotSeen};
}

Assessment assessment(const std::string& measure, const Found& found, int pair, int side, const AxleNumber& axle) {
    Assessment result;
    result.measure = measure;
    result.pair = pair;
    result.side = side;
    result.vehicle = axle.vehicle.value_or(0);
    result.value = found.value;
    result.interval = found.interval;
    result.reason = found.reason;
    return result;
}

std::vector<Assessment> valuesOfWheels(const PassResult& result, const std::string& measure) {
    std::vector<Assessment> values;
    for (std::size_t i = 0; i < result.pairs.size(); ++i) {
        for (std::size_t side = 0; side < result.pairs[i].wheels.size(); ++side) {
            values.push_back(assessment(measure, valueOfWheel(result, measure, i, side), static_cast<int>(i) + 1,
                                        static_cast<int>(side) + 1, result.pairs[i].axle));
        }
    }
    return values;
}

/// A diameter with the part of its interval that the poses of the sensors make; 0 where that is not known.
struct Diameter : Assessment {
    double byPoses = 0.0;

    double half() const { return static_cast<double>(interval.high - interval.low) / 2.0; }
};

/// Half the width of the interval of the difference of two diameters. Their noise is independent and adds up as squares. The
/// same sensors see all wheels of a side: what their poses do to one diameter they do to the other; those of different sides
/// are independent.
double halfOfDifference(const Diameter& a, const Diameter& b) {
    const auto noise = [](const Diameter& d) { return std::max(0.0, d.half() * d.half() - d.byPoses * d.byPoses); };
    const double poses = a.side == b.side ? a.byPoses - b.byPoses : std::hypot(a.byPoses, b.byPoses);
    return std::sqrt(noise(a) + noise(b) + poses * poses);
}

/// The difference between the largest and the smallest of values that all are there.
Found spread(const std::vector<Diameter>& values, int expected) {
    const auto isMeasured = [](const Assessment& v) { return v.value.has_value(); };
    const auto measured = std::count_if(values.begin(), values.end(), isMeasured);
    if (measured < expected || measured < 2) {
        const auto missing = std::find_if_not(values.begin(), values.end(), isMeasured);
        const std::string why = missing != values.end() ? ": " + missing->reason : "";
        return {
            {}, {}, std::to_string(measured) + " of " + std::to_string(expected) + " diameters were measured" + why};
    }
    const auto byValue = [](const Assessment& a, const Assessment& b) { return *a.value < *b.value; };
    const auto [least, most] = std::minmax_element(values.begin(), values.end(), byValue);
    Found result{*most->value - *least->value, {}, {}};
    if (least->interval.isKnown() && most->interval.isKnown()) {
        const double both = halfOfDifference(*least, *most);
        result.interval = {static_cast<float>(*result.value - both), static_cast<float>(*result.value + both)};
    }
    return result;
}

/// Differences of diameters over axles, bogies or vehicles.
std::vector<Assessment> differences(const PassResult& result, const MeasureInfo& measure) {
    struct Group {
        std::vector<Diameter> wheels;
        AxleNumber axle;
        int expected = 0;
    };
    std::map<std::array<int, 3>, Group> groups; // vehicle, bogie, pair
    for (const Assessment& wheel : valuesOfWheels(result, "diameter")) {
        const AxleNumber& axle = result.pairs[static_cast<std::size_t>(wheel.pair) - 1].axle;
        const bool isOfAxle = measure.of == MeasureOf::Axle;
        const bool isOfBogie = measure.of == MeasureOf::Bogie;
        if (!isOfAxle && (!axle.vehicle || (isOfBogie && !axle.bogie))) {
            continue;
        }
        Group& group = groups[{isOfAxle ? 0 : *axle.vehicle, isOfBogie ? *axle.bogie : 0, isOfAxle ? wheel.pair : 0}];
        group.wheels.push_back({wheel, posesOf(result, wheel)});
        group.axle = axle;
        const PassVehicle* const vehicle = result.vehicleOf(result.pairs[static_cast<std::size_t>(wheel.pair) - 1]);
        int axles = 1;
        if (isOfBogie && vehicle != nullptr) {
            std::vector<int> bogies;
            std::copy_if(vehicle->layout.begin(), vehicle->layout.end(), std::back_inserter(bogies),
                         [](int count) { return count > 1; });
            const auto bogie = static_cast<std::size_t>(*axle.bogie) - 1;
            axles = bogie < bogies.size() ? bogies[bogie] : 1;
        } else if (!isOfAxle && vehicle != nullptr) {
            axles = vehicle->axles();
        }
        group.expected = 2 * axles;
    }
    std::vector<Assessment> values;
    for (const auto& [place, group] : groups) {
        Assessment value = assessment(measure.name, spread(group.wheels, group.expected), place[2], 0, group.axle);
        value.bogie = place[1];
        values.push_back(value);
    }
    return values;
}

} // namespace

std::vector<Assessment> valuesOf(const PassResult& result, const MeasureInfo& measure) {
    const auto ofAxle = axleMeasures().find(measure.name);
    if (ofAxle != axleMeasures().end()) {
        std::vector<Assessment> values;
        for (std::size_t i = 0; i < result.pairs.size(); ++i) {
            values.push_back(assessment(measure.name, ofAxle->second(result.pairs[i]), static_cast<int>(i) + 1, 0,
                                        result.pairs[i].axle));
        }
        return values;
    }
    return measure.of == MeasureOf::Wheel ? valuesOfWheels(result, measure.name) : differences(result, measure);
}

} // namespace KxInspect::detail
