// Settings fitted to passes of simulated stations, compared with the truth of other passes.
#include "inspect/station/recordRuns.h"
#include "inspect/station/simulatedStation.h"

#include <KxInspect/Error.h>
#include <KxInspect/Train.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace KxInspect;
using kxsim::Parameters;
using station_test::Change;

class FitStation : public testing::Test, public testing_support::TempFiles {
protected:
    KnownPass pass(const QString& name, std::uint64_t seed, const Change& first, const Change& second) const {
        return station_test::simulate(*this, name, seed, first, second);
    }
};

struct Station {
    const char* description;
    Change first;
    Change second;
    double worst; ///< mm; the noise of an offset and what a gauge reads to
};

TEST_F(FitStation, MeasuresOtherPassesAtStationsOfAnyPose) {
    const std::vector<Station> stations = {
        {"flat and steep", [](Parameters& p) { p.alpha = -20.0; }, [](Parameters& p) { p.alpha = -58.0; }, 0.1},
        {"tilted to other sides, equal steps of the line",
         [](Parameters& p) {
             p.alpha = 38.0;
             p.hasEqualAngles = false;
         },
         [](Parameters& p) { p.beta = 82.0; }, 0.1},
        {"flange first on one side, which the settings of the simulator miss by 2 mm",
         [](Parameters& p) { p.gamma = 0.0; }, [](Parameters& p) { p.aimHeight = 30.0; }, 0.1},
        {"near with few points, far with a narrow fan", [](Parameters& p) { p.points = 300; },
         [](Parameters& p) {
             p.standOff = 320.0;
             p.halfAngle = 7.0;
             p.maxRange = 900.0;
         },
         0.1},
        {"noise, without surroundings",
         [](Parameters& p) {
             p.noise = 0.25;
             p.spikes = 0.004;
             p.hasBackground = p.hasObjects = p.hasRails = false;
         },
         [](Parameters& p) {
             p.halfAngle = 22.0;
             p.maxLine = 200.0;
         },
         0.2},
    };
    for (const Station& station : stations) {
        SCOPED_TRACE(station.description);
        const KnownPass known = pass("known", 11, station.first, station.second);
        const StationFit fit = fitStation({known});
        ASSERT_EQ(fit.fault, "");
        ASSERT_EQ(fit.pairs.size(), 4u);
        EXPECT_LE(fit.largest(), station.worst);
        const KnownPass other = pass("other", 12, station.first, station.second);
        const PassResult result = measurePass({other.recordings[1], other.recordings[0]}, settingsOf(fit));
        EXPECT_TRUE(result.warnings.empty()) << result.warnings.front();
        ASSERT_EQ(result.pairs.size(), 4u);
        for (std::size_t i = 0; i < result.pairs.size(); ++i) {
            EXPECT_NEAR(double(result.pairs[i].distance), other.distances[i], station.worst) << "pair " << i + 1;
        }
    }
}

TEST_F(FitStation, TakesSeveralPassesAndUnknownDistances) {
    const Change second = [](Parameters& p) { p.records = kxsim::RecordKind::Cloud; };
    const Change first = [&](Parameters& p) {
        second(p);
        p.alpha = -30.0;
    };
    KnownPass a = pass("a", 21, first, second);
    KnownPass b = pass("b", 22, first, second);
    a.distances = {a.distances[0], std::nan(""), std::nan(""), a.distances[3]};
    std::swap(b.recordings[0], b.recordings[1]); // the sensors are known by their serial numbers
    const StationFit fit = fitStation({a, b});
    ASSERT_EQ(fit.fault, "");
    EXPECT_EQ(fit.known(), 6);
    EXPECT_EQ(fit.sensors[0].serial, 101);
    EXPECT_EQ(fit.sensors[0].wheels.size(), 8u);
    EXPECT_TRUE(std::isnan(fit.pairs[1].residual));
    const double spread = fit.rms() * std::sqrt(6.0 / 5.0); // of six residuals about their mean
    EXPECT_NEAR(double(fit.baseUncertainty), 2.571 * spread / std::sqrt(6.0), 1e-4); // t of five degrees of freedom
    EXPECT_LE(fit.largest(), 0.1);
}

TEST_F(FitStation, FindsTreadsWithoutFlanges) {
    const KnownPass known = pass(
        "treads", 31, [](Parameters& p) { p.alpha = -50.0; }, [](Parameters&) {});
    FitOptions options;
    options.withTreads = true;
    const StationFit fit = fitStation({known}, options);
    ASSERT_EQ(fit.fault, "");
    for (const FittedSensor& sensor : fit.sensors) {
        const double across = std::cos(std::atan(double(sensor.reference->slope)));
        const auto behind = [&](const Line& line) {
            return double(line.intercept - sensor.reference->intercept) * across;
        };
        EXPECT_GT(behind(*sensor.treadLow), 33.0) << "the thickest flange";
        EXPECT_LT(behind(*sensor.treadLow), 55.0);
        EXPECT_GT(behind(*sensor.treadHigh), 100.0);
        EXPECT_LT(behind(*sensor.treadHigh), 200.0) << "before what is behind the wheel";
    }
    const Change sparse = [](Parameters& p) { p.points = 120; };
    EXPECT_NE(fitStation({pass("sparse", 31, sparse, sparse)}, options).fault.find("no tread with 63 points"),
              std::string::npos);
}

struct Refusal {
    const char* description;
    std::vector<KnownPass> passes;
    std::string reason; ///< part of the fault
};

TEST_F(FitStation, SaysWhyThereAreNoSettings) {
    const Change plain = [](Parameters&) {};
    const Change tilted = [](Parameters& p) { p.alpha = -30.0; };
    const KnownPass good = pass("good", 41, plain, tilted);
    const KnownPass moved = pass("moved", 42, plain, plain);
    const KnownPass sparse = pass(
        "sparse", 41, [](Parameters& p) { p.points = 16; }, tilted);
    const auto given = [&](std::vector<double> distances) { return KnownPass{good.recordings, std::move(distances)}; };
    const std::vector<double>& d = good.distances;
    KnownPass empty = given({d[0]});
    const QByteArray idle = QByteArray("\x05\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\xc8\x42", 15);
    empty.recordings[0] = write("idle_101.bin", idle + idle).toStdString();
    const std::vector<Refusal> refusals = {
        {"a distance too few", {given({d[0], d[1], d[2]})}, "shows 4 wheels, but 3 distances were given"},
        {"a distance too many", {given({d[0], d[1], d[2], d[3], d[3]})}, "shows 4 wheels, but 5 distances were given"},
        {"one value wrong by a typing error", {given({d[0] + 20.0, d[1], d[2], d[3]})}, "mm for pair 1 of pass 1"},
        {"a sensor that was moved", {good, moved}, "the sensor was moved between them"},
        {"too few points", {sparse}, "its points are too few"},
        {"nothing in view", {empty}, "none of its 2 records shows a surface"},
    };
    for (const Refusal& refusal : refusals) {
        const StationFit fit = fitStation(refusal.passes);
        EXPECT_NE(fit.fault.find(refusal.reason), std::string::npos) << refusal.description << ": " << fit.fault;
        EXPECT_THROW(settingsOf(fit), Error) << refusal.description;
        EXPECT_EQ(fit.sensors.size(), 2u) << "to be drawn";
    }
    EXPECT_THROW(fitStation({}), Error);
    EXPECT_THROW(fitStation({given({std::nan("")})}), Error) << "no distance is known";
    EXPECT_THROW(fitStation({given({-1.0})}), Error);
    EXPECT_THROW(fitStation({{{good.recordings[0], good.recordings[0]}, {1360.0}}}), Error);
}

TEST(RecordRuns, LongRunsAreWheels) {
    using detail::divideRuns;
    using detail::runsOf;
    const auto runs = runsOf({3, 4, 4, 7, 8, 20, 30, 31, 32, 33, 34, 60});
    ASSERT_EQ(runs.size(), 4u) << "two missing records do not end a run";
    EXPECT_EQ(std::pair(runs[0].first, runs[0].last), std::pair(3, 8));
    const auto division = divideRuns(runs);
    ASSERT_EQ(division.wheels.size(), 2u);
    EXPECT_EQ(division.wheels[1].first, 30);
    EXPECT_EQ(std::pair(division.shortestWheel, division.longestOther), std::pair(5, 1));
    EXPECT_EQ(divideRuns(runs, 1).wheels.size(), 2u) << "not as expected: 6 and 5 records are alike";
    EXPECT_EQ(divideRuns(runs, 4).wheels.size(), 4u) << "all of them";
    const auto mixed = std::vector<detail::RecordRun>{{1, 60}, {100, 119}, {200, 203}}; // one wheel was cut
    EXPECT_EQ(divideRuns(mixed).wheels.size(), 2u);
    EXPECT_EQ(divideRuns(mixed, 1).wheels.size(), 1u);
    EXPECT_EQ(divideRuns({{1, 10}, {20, 26}}).wheels.size(), 2u) << "no quotient above 2";
    EXPECT_EQ(runsOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 16, 17, 27}).size(), 2u) << "3 missing behind 12";
    EXPECT_TRUE(divideRuns({}).wheels.empty());
}

} // namespace
