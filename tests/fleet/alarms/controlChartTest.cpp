// Shifts of stations.
#include "fleet/alarms/controlChart.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace kxfleet;

/// A hundred wheels a day and noise of 0.01.
std::vector<StationDay> station(int days, unsigned seed) {
    std::mt19937_64 engine(seed);
    std::normal_distribution<double> noise(0.0, 0.01);
    std::vector<StationDay> result;
    result.reserve(static_cast<std::size_t>(days));
    for (int day = 0; day < days; ++day) {
        result.push_back({1000.0 + day, noise(engine), 100});
    }
    return result;
}

TEST(ControlChart, NamesShiftsWithinThreeDays) {
    for (const double shift : {0.12, -0.12, 0.3}) {
        for (unsigned seed = 1; seed <= 50; ++seed) {
            std::vector<StationDay> days = station(200, seed);
            for (std::size_t i = 100; i < days.size(); ++i) {
                days[i].residual += i < 106 ? shift : 0.0; // later ones are expected with it
            }
            const std::optional<StationShift> found = firstShift(days, 0.0);
            ASSERT_TRUE(found) << shift << ", seed " << seed;
            EXPECT_EQ(found->began, 1100.0);
            EXPECT_LE(found->day, 1102.0) << "the third day";
            EXPECT_NEAR(found->size, shift, 0.03);
            EXPECT_FALSE(firstShift(days, 1106.0)) << "it is known";
        }
    }
}

/// One that began before the noise was known is named as soon as it is.
TEST(ControlChart, NamesAnEarlyShiftLater) {
    std::vector<StationDay> days = station(50, 1);
    for (std::size_t i = 3; i < 9; ++i) {
        days[i].residual -= 0.4;
    }
    const std::optional<StationShift> found = firstShift(days, 0.0);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->began, 1003.0);
    EXPECT_EQ(found->day, 1009.0);
    EXPECT_NEAR(found->size, -0.4, 0.03);
}

TEST(ControlChart, InventsNone) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        std::vector<StationDay> days = station(730, seed);
        days[300].residual = 3.0;
        days[300].wheels = 9; // too few
        days[400].residual = 0.5; // an odd day
        EXPECT_FALSE(firstShift(days, 0.0)) << seed;
    }
    EXPECT_FALSE(firstShift(station(9, 1), 0.0));
    EXPECT_FALSE(firstShift({}, 0.0));
}

} // namespace
