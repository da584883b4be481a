// The sheet of a pass from its result.
#include <KxInspect/PassSheet.h>

#include "inspect/limits/passValues.h"

#include <algorithm>
#include <array>
#include <map>

namespace KxInspect {

namespace {

using namespace detail;

/// What a value is of: pair, side, vehicle and bogie, 0 where they do not matter.
using Place = std::array<int, 4>;

Place placeOf(const MeasureInfo& measure, int pair, int side, const AxleNumber& axle) {
    switch (measure.of) {
    case MeasureOf::Wheel:
        return {pair, side, 0, 0};
    case MeasureOf::Axle:
        return {pair, 0, 0, 0};
    case MeasureOf::Bogie:
        return {0, 0, axle.vehicle.value_or(0), axle.bogie.value_or(0)};
    case MeasureOf::Vehicle:
        break;
    }
    return {0, 0, axle.vehicle.value_or(0), 0};
}

Place placeOf(const MeasureInfo& measure, const Assessment& value) {
    AxleNumber axle;
    axle.vehicle = value.vehicle;
    axle.bogie = value.bogie;
    return placeOf(measure, value.pair, value.side, axle);
}

/// What the interval of a measure holds. A distance rests on the base distance, a measure of the section on poses.
std::string whatIsHeld(const PassResult& result, const std::string& measure, const Assessment& value) {
    if (!value.interval.isKnown()) {
        return {};
    }
    if (measure == "backToBack") {
        return result.baseUncertainty ? "noise and base distance" : "noise only";
    }
    if (measure == "yaw" || measure == "roundness") {
        return "noise only";
    }
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        if (measure == info.key) {
            const PassWheelMeasures* const wheel = measuredWheel(result, static_cast<std::size_t>(value.pair) - 1,
                                                                 static_cast<std::size_t>(value.side) - 1);
            return wheel != nullptr ? whatIntervalHolds((*wheel)[info.measure]) : "noise only";
        }
    }
    // A difference of diameters holds what all of them hold.
    const bool holdsPoses = std::all_of(result.wheels.begin(), result.wheels.end(), [](const PassWheelMeasures& wheel) {
        const PassValue& diameter = wheel[PassMeasure::Diameter];
        return !diameter.interval.isKnown() || diameter.byPoses;
    });
    return holdsPoses ? "noise and poses" : "noise only";
}

/// The values of one measure by what they are of.
std::map<Place, SheetValue> valuesByPlace(const PassResult& result, const MeasureInfo& measure) {
    std::map<Place, SheetValue> values;
    for (const Assessment& value : valuesOf(result, measure)) {
        SheetValue& cell = values[placeOf(measure, value)];
        cell.value = value.value;
        cell.interval = value.interval;
        cell.intervalHolds = whatIsHeld(result, measure.name, value);
        cell.reason = value.reason;
    }
    if (result.assessment) {
        for (const Assessment& value : result.assessment->values) {
            const auto found = value.measure == measure.name ? values.find(placeOf(measure, value)) : values.end();
            if (found != values.end()) {
                found->second.reason = value.reason;
                found->second.bounds = value.bounds;
                found->second.verdict = value.verdict;
                found->second.isDoubtful = value.isDoubtful;
            }
        }
    }
    return values;
}

/// From which profiles a wheel was measured: those of the section, or else those of its recording.
void addData(const PassResult& result, SheetRow& row) {
    const auto pair = static_cast<std::size_t>(row.pair) - 1;
    const auto side = static_cast<std::size_t>(row.side) - 1;
    if (const PassWheelMeasures* const measured = measuredWheel(result, pair, side)) {
        for (const SensorShare& share : measured->sensors) {
            if (share.reason.empty()) {
                row.profiles += share.profiles;
                row.sensors.push_back(share.sensor);
            }
        }
    }
    const PassWheel* const wheel = result.wheelOf(result.pairs[pair], side);
    if (row.sensors.empty() && wheel != nullptr) {
        row.profiles = wheel->profiles;
        row.sensors.push_back(result.sides[side].sensor);
    }
    row.reason = row.sensors.empty() ? "no sensor saw the wheel" : "";
}

/// The axles of known vehicles that have no number in the pass.
std::vector<AxleNumber> unseenAxles(const PassResult& result) {
    std::vector<AxleNumber> unseen;
    for (const PassVehicle& vehicle : result.train.vehicles) {
        int axle = 0;
        int bogie = 0;
        for (const int count : vehicle.layout) {
            bogie += count > 1 ? 1 : 0;
            for (int i = 0; i < count; ++i) {
                ++axle;
                const bool isSeen = std::any_of(result.pairs.begin(), result.pairs.end(), [&](const WheelPair& pair) {
                    return pair.axle.vehicle == vehicle.number && pair.axle.axle == axle;
                });
                if (!isSeen) {
                    unseen.push_back({vehicle.number, count > 1 ? std::optional(bogie) : std::nullopt, axle, {}});
                }
            }
        }
    }
    return unseen;
}

/// A verdict on what no sensor saw is given where something of its vehicle that was not seen has limits.
std::optional<LimitVerdict> verdictOfUnseen(const PassResult& result, const AxleNumber& axle) {
    if (!result.assessment) {
        return {};
    }
    const bool hasLimits =
        std::any_of(result.assessment->values.begin(), result.assessment->values.end(), [&](const Assessment& value) {
            return value.pair == 0 && value.bogie == 0 && value.vehicle == axle.vehicle && !value.reason.empty();
        });
    return hasLimits ? std::optional(LimitVerdict::NotMeasured) : std::nullopt;
}

} // namespace

std::vector<SheetRow> sheetOf(const PassResult& result) {
    constexpr const char* kUnseen = "the axle has no number in the pass";
    std::vector<SheetRow> rows;
    for (std::size_t pair = 0; pair < result.pairs.size(); ++pair) {
        for (std::size_t side = 0; side < result.sides.size(); ++side) {
            SheetRow row;
            row.pair = static_cast<int>(pair) + 1;
            row.side = static_cast<int>(side) + 1;
            row.trackSide = trackSideOf(result, side);
            row.axle = result.pairs[pair].axle;
            row.verdict = result.assessment ? result.assessment->ofWheel(row.pair, row.side) : std::nullopt;
            addData(result, row);
            rows.push_back(row);
        }
    }
    for (const AxleNumber& axle : unseenAxles(result)) {
        for (std::size_t side = 0; side < result.sides.size(); ++side) {
            SheetRow row;
            row.trackSide = trackSideOf(result, side);
            row.axle = axle;
            row.verdict = verdictOfUnseen(result, axle);
            row.reason = kUnseen;
            rows.push_back(row);
        }
    }
    for (const MeasureInfo& measure : measureInfos()) {
        const std::map<Place, SheetValue> values = valuesByPlace(result, measure);
        for (SheetRow& row : rows) {
            const auto found = values.find(placeOf(measure, row.pair, row.side, row.axle));
            const bool isOfPart = measure.of == MeasureOf::Bogie || measure.of == MeasureOf::Vehicle;
            SheetValue value = found != values.end() && (row.pair > 0 || isOfPart) ? found->second : SheetValue();
            if (found == values.end() || (row.pair == 0 && !isOfPart)) {
                value.reason = row.pair == 0 ? kUnseen : isOfPart ? row.axle.reason : row.reason;
                value.reason = value.reason.empty() ? "the axle runs in no bogie" : value.reason;
            }
            row.isDoubtful = row.isDoubtful || (!isOfPart && value.isDoubtful == true);
            row.values.push_back(value);
        }
    }
    return rows;
}

} // namespace KxInspect
