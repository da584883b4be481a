// Readings of wheels out of a store, with lives and shifts.
#include "fleet/history/history.h"

#include "fleet/storedPasses.h"

#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace kxfleet;
using fleet_test::measure;
using fleet_test::noonOf;
using fleet_test::passOf;
using KxInspect::PassMeasure;
using KxInspect::PassResult;

class HistoryTest : public testing::Test {
protected:
    HistoryTest() : store_(folder_.filePath(QStringLiteral("s.db")).toStdString(), IfMissing::Create) {}

    Store& store() { return store_; }
    /// A pass on a day, with the flange thicknesses of both wheels.
    PassResult pass(int day, float left, float right) {
        PassResult result = passOf(std::to_string(day), noonOf(day), 850.0f);
        measure(result, 0, PassMeasure::FlangeThickness, left, 0.1f);
        measure(result, 1, PassMeasure::FlangeThickness, right, 0.1f);
        return result;
    }

private:
    QTemporaryDir folder_;
    Store store_;
};

TEST_F(HistoryTest, BothWheelsOfAnAxleBeginANewLife) {
    for (int day = 0; day < 20; ++day) { // the right wheel was hardly worn: its own values do not show the turning
        const float left = day < 10 ? 26.0f : 32.0f;
        store().add(pass(20000 + day, left, day < 10 ? 31.9f : 32.0f));
    }
    const HistoryReader reader(store());
    const History history = reader.read("flangeThickness");
    ASSERT_EQ(history.wheels.size(), 2u);
    EXPECT_EQ(history.wheels[0].wheel.side, "left");
    EXPECT_EQ(history.wheels[1].wheel.side, "right");
    for (const WheelSeries& series : history.series) {
        EXPECT_EQ(series.readings.size(), 20u);
        EXPECT_EQ(series.lifeStarts, std::vector<double>{20010.5});
    }
    EXPECT_EQ(reader.read("diameter").series[0].lifeStarts, std::vector<double>{20010.5});
    EXPECT_TRUE(reader.read("rimWidth").wheels.empty());
}

TEST_F(HistoryTest, PlacesAreStationsAndSidesOfTheTrack) {
    store().add(pass(20000, 30.0f, 31.0f));
    PassResult other = pass(20001, 30.0f, 31.0f);
    other.identity.labels.station = "south";
    other.train.order = KxInspect::VehicleOrder::Turned;
    other.train.vehicles[0].vehicleClass = "tram";
    store().add(other);
    store().add(pass(20002, 30.5f, 31.5f)); // its class is not known
    const History history = HistoryReader(store()).read("flangeThickness");
    ASSERT_EQ(history.wheels.size(), 2u);
    EXPECT_EQ(history.wheels[0].vehicleClass, "tram");
    std::vector<double> ofLeft;
    std::vector<std::string> places;
    for (const Reading& reading : history.series[0].readings) {
        ofLeft.push_back(reading.value);
        const MeasuringPlace& place = history.places[static_cast<std::size_t>(reading.station)];
        places.push_back(place.station + ", " + place.trackSide);
    }
    EXPECT_EQ(ofLeft, (std::vector<double>{30.0, 31.0, 30.5})); // turned: it ran on the right
    EXPECT_EQ(places, (std::vector<std::string>{"north, left", "south, right", "north, left"}));
}

TEST(Shifts, AreTakenOffFromTheDayOnThatTheyBegan) {
    const std::vector<StationShift> shifts = {{103.0, 101.0, 0.5}, {110.0, 109.0, -0.25}};
    const std::tuple<double, double, double> cases[] = {
        // day of the reading, known on, value
        {100.0, 200.0, 30.0}, {101.0, 200.0, 29.5},  {101.0, 102.0, 30.0},
        {101.0, 103.0, 29.5}, {109.5, 109.75, 29.5}, {109.5, 110.0, 29.75},
    };
    for (const auto& [day, on, value] : cases) {
        EXPECT_EQ(withoutShifts({day, 30.0, 0}, shifts, on), value) << day << " on " << on;
    }
}

TEST(AlarmLimits, AreThoseOfTheClass) {
    KxInspect::Limits limits;
    limits.measures.push_back({"flangeThickness", "", {.alarmLow = 24.0, .warningLow = 25.0}});
    limits.measures.push_back({"flangeThickness", "tram", {.alarmLow = 20.0, .alarmHigh = 30.0}});
    limits.measures.push_back({"flangeHeight", "", {.alarmHigh = 36.0}});
    struct Case {
        const char *measure, *vehicleClass;
        std::optional<double> low, high;
    };
    const Case cases[] = {{"flangeThickness", "metro", 24.0, {}},
                          {"flangeThickness", "tram", 20.0, 30.0},
                          {"flangeThickness", "", {}, {}}, // it may be a tram
                          {"flangeHeight", "", {}, 36.0},
                          {"diameter", "metro", {}, {}}};
    for (const Case& c : cases) {
        const Limits found = alarmLimits(limits, c.measure, c.vehicleClass);
        EXPECT_EQ(found.low, c.low) << c.measure << c.vehicleClass;
        EXPECT_EQ(found.high, c.high) << c.measure << c.vehicleClass;
    }
}

} // namespace
