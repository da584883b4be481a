// What the stations of a simulated fleet measure, as results of passes.
#include "simulator/fleet/fleetPasses.h"

#include "simulator/random.h"

#include <KxMath/KxMathVersion.h>

#include <QtCore/QString>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <tuple>

namespace kxsim {

namespace {

using KxInspect::kPassMeasures;
using KxInspect::PassMeasure;
using KxInspect::PassResult;
using KxInspect::TrackSide;

/// Standard deviations of the noise of a value and of the error that a side of a station always has, in the order of
/// PassMeasure, mm: about those of the study of docs/accuracy.md.
constexpr std::array<double, kPassMeasures> kNoise = {0.06, 0.014, 0.016, 0.02, 0.004, 0.02};
constexpr std::array<double, kPassMeasures> kStationError = {0.05, 0.02, 0.03, 0.03, 0.005, 0.05};
constexpr double kOffRoundNoise = 0.008;
constexpr double kDistanceNoise = 0.01;
constexpr double kDirtyFactor = 2.5; // more noise
constexpr double kDirtyMissing = 0.1; // values

constexpr double kAxlesApart[] = {2300.0, 9000.0}; // mm, in a bogie and between bogies
constexpr double kVehiclesApart = 4200.0; // mm, from axle to axle

std::uint64_t number(TrackSide side) {
    return side == TrackSide::Left ? 0 : 1;
}

QString padded(int number, int width) {
    return QStringLiteral("%1").arg(number, width, 10, QLatin1Char('0'));
}

/// "2024-03-01T08:15:00Z" of a day after the first one of a year.
std::string timeText(int firstYear, double day) {
    using namespace std::chrono;
    constexpr double kSecondsOfDay = 86400.0;
    const auto time =
        sys_days(year(firstYear) / January / 1) + seconds(static_cast<std::int64_t>(std::floor(day * kSecondsOfDay)));
    const auto date = floor<days>(time);
    const year_month_day ymd(date);
    const hh_mm_ss clock(time - date);
    return QStringLiteral("%1-%2-%3T%4:%5:%6Z")
        .arg(padded(static_cast<int>(ymd.year()), 4), padded(static_cast<int>(static_cast<unsigned>(ymd.month())), 2),
             padded(static_cast<int>(static_cast<unsigned>(ymd.day())), 2),
             padded(static_cast<int>(clock.hours().count()), 2), padded(static_cast<int>(clock.minutes().count()), 2),
             padded(static_cast<int>(clock.seconds().count()), 2))
        .toStdString();
}

/// In place of a hash of bytes that were never there: different for each list of numbers.
std::string madeUpHash(std::initializer_list<std::uint64_t> seeds) {
    Random random(seeds);
    std::string text;
    for (int i = 0; i < 64; ++i) {
        text += "0123456789abcdef"[static_cast<int>(random.uniform() * 16.0)];
    }
    return text;
}

KxInspect::Interval intervalAround(double value, double noise) {
    constexpr double kNormal = 1.959963984540054;
    return KxInspect::Interval::around(static_cast<float>(value), static_cast<float>(kNormal * noise));
}

} // namespace

/// What one side of a station does to what it measures.
struct Fleet::SensorState {
    std::array<double, kPassMeasures> errors = {};
    bool isDirty = false;
    bool hasFailed = false;
};

Fleet::Fleet(const FleetPlan& plan) : plan_(plan) {
    for (int vehicle = 0; vehicle < plan.vehicles; ++vehicle) {
        vehicles_.push_back(wheelsOfVehicle(plan, vehicle));
    }
    const int trains = plan.vehicles / std::max(plan.perTrain, 1);
    Random random({plan.seed, 2});
    const double passesOfTrain = plan.passesPerDay * plan.days;
    for (int train = 0; train < trains; ++train) {
        for (int i = 0; i < static_cast<int>(passesOfTrain); ++i) {
            const double day = (i + random.uniform()) / plan.passesPerDay;
            passes_.push_back(
                {day, train, std::min(static_cast<int>(random.uniform() * plan.stations), plan.stations - 1)});
        }
    }
    std::sort(passes_.begin(), passes_.end(), [](const FleetPass& a, const FleetPass& b) {
        return std::tie(a.day, a.train) < std::tie(b.day, b.train);
    });
    for (int station = 0; station < plan.stations; ++station) {
        for (const TrackSide side : {TrackSide::Left, TrackSide::Right}) {
            Random ofSide({plan.seed, 3, static_cast<std::uint64_t>(station), number(side)});
            const auto nextAfter = [&](double day, double perYear) {
                return perYear > 0.0 ? day - std::log(1.0 - ofSide.uniform()) * 365.0 / perYear : plan.days;
            };
            for (double day = nextAfter(0.0, plan.shiftsPerYear); day < plan.days;
                 day = nextAfter(day, plan.shiftsPerYear)) {
                shifts_.push_back({station, side, day, ofSide.uniform(0.1, 0.5) * (ofSide.chance(0.5) ? 1.0 : -1.0)});
            }
            for (double day = nextAfter(0.0, plan.dirtPerYear); day < plan.days;) {
                dirt_.push_back({station, side, day, day + ofSide.uniform(3.0, 15.0)});
                day = nextAfter(dirt_.back().until, plan.dirtPerYear);
            }
        }
    }
    std::sort(shifts_.begin(), shifts_.end(), [](const FleetShift& a, const FleetShift& b) { return a.day < b.day; });
}

const FleetWheel& Fleet::wheel(int vehicle, int wheel) const {
    return vehicles_[static_cast<std::size_t>(vehicle)][static_cast<std::size_t>(wheel)];
}

std::string Fleet::vehicleNumber(int vehicle) {
    return (QLatin1Char('V') + padded(vehicle + 1, 4)).toStdString();
}

std::string Fleet::stationName(int station) {
    return "station " + std::to_string(station + 1);
}

Fleet::SensorState Fleet::stateOf(const FleetPass& pass, TrackSide side) const {
    SensorState state;
    Random random({plan_.seed, 4, static_cast<std::uint64_t>(pass.station), number(side)});
    for (std::size_t i = 0; i < kPassMeasures; ++i) {
        state.errors[i] = kStationError[i] * random.boundedNormal();
    }
    for (const FleetShift& shift : shifts_) {
        if (shift.station == pass.station && shift.side == side && shift.day <= pass.day) {
            state.errors[static_cast<std::size_t>(PassMeasure::FlangeThickness)] += shift.size;
            state.errors[static_cast<std::size_t>(PassMeasure::FlangeSlope)] += 0.3 * shift.size;
        }
    }
    state.isDirty = std::any_of(dirt_.begin(), dirt_.end(), [&](const FleetDirt& dirt) {
        return dirt.station == pass.station && dirt.side == side && dirt.from <= pass.day && pass.day < dirt.until;
    });
    return state;
}

PassResult Fleet::measure(std::size_t index) const {
    const FleetPass& pass = passes_[index];
    Random random({plan_.seed, 5, static_cast<std::uint64_t>(index)});
    PassResult result;
    result.identity.version = KxMath_GetVersionString();
    result.identity.labels.station = stationName(pass.station);
    result.identity.labels.time = timeText(plan_.firstYear, pass.day);
    result.settings = "settings.ini";
    result.identity.settings.values = {{"SENSOR1/side", std::string("left")}, {"SENSOR2/side", std::string("right")}};
    result.baseDistance = 1700.0f;
    result.nominal = 1360.0f;
    result.tolerance = 3.0f;
    result.defectLimits.emplace();
    result.train.isListed = true;
    result.train.order = KxInspect::VehicleOrder::Listed;
    std::array<SensorState, 2> states;
    for (const TrackSide side : {TrackSide::Left, TrackSide::Right}) {
        const std::uint64_t n = number(side);
        states[n] = stateOf(pass, side);
        states[n].hasFailed = random.chance(plan_.failedPasses / 2.0);
        KxInspect::PassSide recording;
        recording.file = recording.name = "pass_" + std::to_string(n + 1) + ".bin";
        recording.serial = static_cast<int>(n) + 1;
        recording.sensor = static_cast<int>(n) + 1;
        recording.sha256 = madeUpHash({plan_.seed, 6, static_cast<std::uint64_t>(index), n});
        recording.missing = states[n].hasFailed ? "the recording is damaged" : "";
        result.sides.push_back(recording);
    }

    double place = 0.0;
    for (int inTrain = 0; inTrain < plan_.perTrain; ++inTrain) {
        const int vehicle = pass.train * plan_.perTrain + inTrain;
        KxInspect::PassVehicle seen;
        seen.number = inTrain + 1;
        seen.layout = std::vector<int>(static_cast<std::size_t>(plan_.axles / 2), 2);
        seen.seen = plan_.axles;
        seen.mark = "type A";
        seen.vehicleNumber = vehicleNumber(vehicle);
        seen.vehicleClass = "";
        result.train.vehicles.push_back(seen);
        for (int axle = 0; axle < plan_.axles; ++axle) {
            const auto pairNumber = static_cast<int>(result.pairs.size()) + 1;
            KxInspect::WheelPair pair;
            pair.axle = {inTrain + 1, axle / 2 + 1, axle + 1, ""};
            pair.place = place;
            place += axle + 1 == plan_.axles ? kVehiclesApart : kAxlesApart[axle % 2];
            for (const TrackSide side : {TrackSide::Left, TrackSide::Right}) {
                const std::uint64_t n = number(side);
                const SensorState& state = states[n];
                const FleetWheel& truth = wheel(vehicle, 2 * axle + static_cast<int>(n));
                KxInspect::PassWheelMeasures measures;
                measures.pair = pairNumber;
                measures.side = side;
                measures.place = static_cast<float>(*pair.place);
                for (std::size_t i = 0; i < kPassMeasures; ++i) {
                    const double noise = kNoise[i] * (state.isDirty ? kDirtyFactor : 1.0);
                    const double value = truth.valueOn(pass.day, KxInspect::kPassMeasureInfos[i].measure) +
                                         state.errors[i] + noise * random.boundedNormal();
                    const bool isMissing = random.chance(state.isDirty ? kDirtyMissing : plan_.missingValues);
                    KxInspect::PassValue& out = measures.values[i];
                    if (state.hasFailed) {
                        out.reason = "the recording is damaged";
                    } else if (isMissing) {
                        out.reason = "too few profiles show it";
                    } else {
                        out.value = static_cast<float>(value);
                        out.interval = intervalAround(value, noise);
                    }
                }
                result.wheels.push_back(measures);

                const double depth = random.chance(plan_.seesFlat) ? truth.offRoundOn(pass.day) : 0.0;
                const double seenDepth = std::max(0.0, depth + kOffRoundNoise * random.boundedNormal());
                if (state.hasFailed) {
                    continue;
                }
                KxInspect::PassWheel& of = result.sides[n].wheels.emplace_back();
                of.number = static_cast<int>(result.sides[n].wheels.size());
                of.profiles = 40;
                of.firstRecord = of.number * 100;
                of.defectsReason = "treads are not simulated";
                of.roundness.emplace();
                of.roundness->flangeRadius = measures.values[0].value.value_or(850.0f) / 2.0f + 28.0f;
                of.roundness->largest = static_cast<float>(seenDepth);
                of.roundness->largestInterval = intervalAround(seenDepth, kOffRoundNoise);
                of.roundness->limit = result.defectLimits->maxRadiusDeviation;
                of.roundness->isOut = of.roundness->largest > of.roundness->limit;
                pair.wheels[n] = result.sides[n].wheels.size() - 1;
            }
            if (pair.isComplete()) {
                pair.distance = static_cast<float>(1360.0 + kDistanceNoise * random.boundedNormal());
                pair.deviation = pair.distance - result.nominal;
                pair.inTolerance = true;
                pair.interval = intervalAround(pair.distance, kDistanceNoise);
            } else {
                pair.reason = "a sensor did not see the wheel";
            }
            result.pairs.push_back(pair);
        }
    }
    return result;
}

} // namespace kxsim
