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
    for (const double shift : {0.1, -0.1, 0.3}) {
        for (unsigned seed = 1; seed <= 50; ++seed) {
            std::vector<StationDay> days = station(200, seed);
            for (std::size_t i = 100; i < 150; ++i) { // and back again
                days[i].residual += shift;
            }
            const std::vector<StationShift> shifts = shiftsOf(days);
            ASSERT_EQ(shifts.size(), 2u) << shift << ", seed " << seed;
            for (std::size_t i = 0; i < 2; ++i) {
                const double began = i == 0 ? 1100.0 : 1150.0;
                EXPECT_EQ(shifts[i].began, began);
                EXPECT_LE(shifts[i].day, began + 2.0) << "the third day";
                EXPECT_NEAR(shifts[i].size, i == 0 ? shift : -shift, 0.03);
            }
        }
    }
}

TEST(ControlChart, InventsNone) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        std::vector<StationDay> days = station(730, seed);
        days[300].residual = 3.0;
        days[300].wheels = 9; // too few
        EXPECT_TRUE(shiftsOf(days).empty()) << seed;
    }
    EXPECT_TRUE(shiftsOf(station(9, 1)).empty());
    EXPECT_TRUE(shiftsOf({}).empty());
}

} // namespace
