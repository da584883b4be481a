// Whether the wheels of a varied fleet are assigned to their vehicles and axles, and whether the intervals of their measures
// hold the truth.
//
//     passFleet [PASSES [FIRST_SEED]]
//
// Each pass is a train of 4 to 12 vehicles of several kinds with a list, in every other one the last vehicle ahead; four
// sensors, two of them on the field side. Wear, noise (0.02 to 0.15 mm), yaw, lateral shifts and speed differ from pass to pass,
// some trains come from the lathe, and up to three wheels are not seen by an inner sensor. Exit code 1 when an axle has a
// wrong number, or when the intervals of a measure hold certainly fewer than 93 % of the true values. A hollow of 0 counts
// with none: its interval ends there, and always holds it.
#include "simulator/axles.h"
#include "simulator/random.h"
#include "simulator/simulation.h"
#include "simulator/train.h"
#include "tools/tables/coverage.h"
#include "tools/tables/trueMeasures.h"

#include <KxInspect/Train.h>

#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace {

using namespace KxInspect;

struct Kind {
    const char* mark;
    std::vector<double> spacings;
    double overhang; ///< from an end axle to the coupling
};

const std::vector<Kind> kKinds = {{"metro car", {2100, 10500, 2100}, 2250},
                                  {"motor coach", {2500, 14600, 2500}, 2400},
                                  {"coach", {2560, 16440, 2560}, 2450},
                                  {"short coach", {2500, 11300, 2500}, 2300},
                                  {"Bo'Bo' locomotive", {2600, 7300, 2600}, 2900},
                                  {"Co'Co' locomotive", {1900, 2150, 6700, 2150, 1900}, 3050},
                                  {"wagon with bogies", {1800, 8400, 1800}, 1950},
                                  {"wagon", {8000}, 2400}};

int whole(kxsim::Random& random, int from, int to) {
    return std::min(to, from + static_cast<int>(random.uniform(0.0, to - from + 1.0)));
}

/// A train of one kind with a few of others in it.
std::vector<ListedVehicle> drawVehicles(kxsim::Random& random) {
    const auto most = static_cast<int>(kKinds.size()) - 1;
    const int main = whole(random, 0, most);
    std::vector<const Kind*> kinds;
    for (int count = whole(random, 4, 12); count > 0; --count) {
        kinds.push_back(&kKinds[static_cast<std::size_t>(random.uniform() < 0.7 ? main : whole(random, 0, most))]);
    }
    std::vector<ListedVehicle> vehicles;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const double toNext = i + 1 < kinds.size() ? kinds[i]->overhang + kinds[i + 1]->overhang : 0.0;
        vehicles.push_back({kinds[i]->mark, std::to_string(i + 1), {}, kinds[i]->spacings, toNext});
    }
    return vehicles;
}

kxsim::Parameters drawPass(std::uint64_t seed) {
    kxsim::Random random({seed, 78});
    kxsim::Parameters p;
    p.seed = seed;
    p.vehicles = drawVehicles(random);
    p.isTurned = random.uniform() < 0.5;
    const bool isFromLathe = random.uniform() < 0.2;
    p.diameter = random.uniform(860.0, 920.0);
    p.wear = isFromLathe ? 1.0 : random.uniform(0.0, 50.0);
    p.flangeWear = isFromLathe ? 0.0 : random.uniform(0.0, 6.0);
    p.treadWear = isFromLathe ? 0.0 : random.uniform(0.0, 4.0);
    p.yaw = random.uniform(-2.0, 2.0);
    p.yawSpread = random.uniform(0.0, 2.0);
    p.lateralSpread = random.uniform(0.0, 2.0);
    p.levelMargin = 14.0;
    p.speed = random.uniform(5.0, 20.0);
    p.noise = std::exp(random.uniform(std::log(0.02), std::log(0.15)));
    p.layout = {{101, true, kxsim::SensorPlace::Inner, 0.0},
                {102, false, kxsim::SensorPlace::Inner, 0.0},
                {103, true, kxsim::SensorPlace::Field, 300.0},
                {104, false, kxsim::SensorPlace::Field, 300.0}};
    const auto axles = static_cast<int>(kxsim::axlesOf(p).size());
    for (int count = whole(random, 0, 3); count > 0; --count) {
        p.unseen.push_back({whole(random, 1, axles), whole(random, 1, 2)});
    }
    return p;
}

struct Tally {
    int held = 0;
    int values = 0;
    int absent = 0;
    double largest = 0.0;
    double squares = 0.0;

    void add(double error, bool isHeld) {
        held += isHeld ? 1 : 0;
        ++values;
        squares += error * error;
        largest = std::max(largest, std::abs(error));
    }
    void print(const char* name) const {
        const double count = std::max(1, values);
        std::printf("| %s | %d | %d | %.3f | %.3f | %.1f %% |\n", name, values, absent, std::sqrt(squares / count),
                    largest, 100.0 * held / count);
    }
};

struct Fleet {
    int passes = 0;
    int vehicles = 0;
    int axles = 0;
    int unseen = 0;
    int right = 0;
    int asPassed = 0; ///< right by the end that passed first: the list fits with either one ahead, and gives no marks
    int wrong = 0;
    int open = 0; ///< without a vehicle
    int lost = 0; ///< axles without a pair
    double seconds = 0.0;
    Tally distances = {};
    std::array<Tally, kPassMeasures> measures = {};
};

/// The number of each axle in its vehicle, counted as listed.
std::vector<int> axlesInVehicles(const kxsim::Parameters& p, const kxsim::Train& train) {
    std::vector<int> starts;
    int count = 0;
    for (const ListedVehicle& vehicle : p.vehicles) {
        starts.push_back(count);
        count += static_cast<int>(vehicle.axles());
    }
    std::vector<int> numbers;
    for (const kxsim::AxlePlace& axle : kxsim::axlesOf(p)) {
        numbers.push_back(axle.listed - starts[static_cast<std::size_t>(axle.car - 1)]);
    }
    numbers.resize(train.pairs.size());
    return numbers;
}

struct Number {
    int vehicle;
    int axle;
};

/// The numbers that are right for an axle of a listed vehicle.
Number numberOf(const kxsim::Parameters& p, int vehicle, int axle, bool isAsPassed) {
    if (!isAsPassed || !p.isTurned) {
        return {vehicle, axle};
    }
    const auto axles = static_cast<int>(p.vehicles[static_cast<std::size_t>(vehicle - 1)].axles());
    return {static_cast<int>(p.vehicles.size()) + 1 - vehicle, axles + 1 - axle};
}

/// The pair of the train that stands where a measured one was found; pairs are metres apart.
std::size_t trueOf(const kxsim::Train& train, double place) {
    const auto distance = [&](const kxsim::WheelPair& pair) { return std::abs(pair.behind - place); };
    const auto nearest = std::min_element(train.pairs.begin(), train.pairs.end(),
                                          [&](const auto& a, const auto& b) { return distance(a) < distance(b); });
    return static_cast<std::size_t>(nearest - train.pairs.begin());
}

void compare(const kxsim::Parameters& p, const kxsim::Train& train, const PassResult& result, Fleet& fleet) {
    const std::vector<int> axles = axlesInVehicles(p, train);
    const bool isAsPassed = result.train.order == VehicleOrder::Passing;
    std::vector<bool> isFound(train.pairs.size());
    std::vector<std::size_t> trueOnes(result.pairs.size(), train.pairs.size());
    for (const PassWheelMeasures& measured : result.wheels) {
        const std::size_t at = trueOf(train, static_cast<double>(measured.place));
        if (measured.pair > 0) {
            trueOnes[static_cast<std::size_t>(measured.pair - 1)] = at;
        }
        const kxsim::Wheel& wheel = train.pairs[at].wheels[measured.side == TrackSide::Left ? 0 : 1];
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            Tally& tally = fleet.measures[static_cast<std::size_t>(info.measure)];
            const PassValue& value = measured[info.measure];
            const double truth = kxtables::trueMeasure(wheel, info.measure);
            if (info.measure == PassMeasure::TreadHollow && truth == 0.0) {
                continue;
            }
            if (value.value) {
                tally.add(static_cast<double>(*value.value) - truth, value.interval.holds(static_cast<float>(truth)));
            } else {
                ++tally.absent;
            }
        }
    }
    for (std::size_t i = 0; i < result.pairs.size(); ++i) {
        const KxInspect::WheelPair& pair = result.pairs[i];
        if (trueOnes[i] == train.pairs.size()) {
            ++fleet.open;
            continue;
        }
        const kxsim::WheelPair& truth = train.pairs[trueOnes[i]];
        isFound[trueOnes[i]] = true;
        const Number expected = numberOf(p, truth.car, axles[trueOnes[i]], isAsPassed);
        if (!pair.axle.vehicle) {
            ++fleet.open;
        } else if (pair.axle.vehicle == expected.vehicle && pair.axle.axle == expected.axle) {
            ++(isAsPassed ? fleet.asPassed : fleet.right);
        } else {
            ++fleet.wrong;
        }
        if (std::isnan(pair.distance)) {
            ++fleet.distances.absent;
        } else {
            fleet.distances.add(static_cast<double>(pair.distance) - truth.backToBack,
                                pair.interval.holds(static_cast<float>(truth.backToBack)));
        }
    }
    fleet.lost += static_cast<int>(std::count(isFound.begin(), isFound.end(), false));
}

void measureTrain(std::uint64_t seed, Fleet& fleet) {
    const QTemporaryDir folder;
    const kxsim::Parameters p = drawPass(seed);
    kxsim::simulatePass(p, folder.path(), {});
    const kxsim::Train train = kxsim::makeTrain(p);
    std::vector<std::string> recordings;
    for (int i = 1; i <= kxsim::sensorsOf(p); ++i) {
        recordings.push_back(
            (folder.path() + QStringLiteral("/train_%1.bin").arg(kxsim::serialOf(p, i))).toStdString());
    }
    PassOptions options;
    options.consist.emplace().vehicles = p.vehicles;
    const StationSettings settings = readStationSettings(folder.filePath("settings.ini").toStdString());
    const std::clock_t start = std::clock();
    const PassResult result = measurePass(recordings, settings, options);
    fleet.seconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    ++fleet.passes;
    fleet.vehicles += static_cast<int>(p.vehicles.size());
    fleet.axles += static_cast<int>(train.pairs.size());
    fleet.unseen += static_cast<int>(p.unseen.size());
    const int wrong = fleet.wrong;
    compare(p, train, result, fleet);
    if (fleet.wrong > wrong) {
        std::printf("seed %d: %d axles with a wrong number\n", static_cast<int>(seed), fleet.wrong - wrong);
    }
    std::fprintf(stderr, "\r%d passes", fleet.passes);
}

} // namespace

int main(int argc, char** argv) {
    const int passes = argc > 1 ? static_cast<int>(std::strtol(argv[1], nullptr, 10)) : 100;
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    Fleet fleet;
    for (int i = 0; i < passes; ++i) {
        measureTrain(first + static_cast<std::uint64_t>(i), fleet);
    }
    std::fputc('\n', stderr);
    std::printf(
        "%d passes, %d vehicles, %d axles, %d wheels not seen by one sensor; %.2f s of measuring for each pass\n\n",
        fleet.passes, fleet.vehicles, fleet.axles, fleet.unseen, fleet.seconds / std::max(1, fleet.passes));
    std::printf("axles with the right number: %d, right as they passed: %d, wrong: %d, without: %d, in no pair: %d\n\n",
                fleet.right, fleet.asPassed, fleet.wrong, fleet.open, fleet.lost);
    std::printf(
        "| measure | values | absent | root mean square of the errors, mm | largest error, mm | holds the truth |\n"
        "| --- | ---: | ---: | ---: | ---: | ---: |\n");
    fleet.distances.print("back-to-back distance");
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        fleet.measures[static_cast<std::size_t>(info.measure)].print(info.title);
    }
    const auto holds = [](const Tally& tally) { return kxtables::holdsEnough(tally.held, tally.values); };
    const bool isHeld = holds(fleet.distances) && std::all_of(fleet.measures.begin(), fleet.measures.end(), holds);
    return fleet.wrong == 0 && isHeld ? 0 : 1;
}
