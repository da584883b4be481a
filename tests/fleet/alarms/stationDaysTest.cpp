// Stations beside their wheels.
#include "fleet/alarms/stationDays.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using namespace kxfleet;

constexpr double kFirstDay = 20000.0;

/// 120 wheels that wear by 0.002 to 0.02 mm a day, each read every day at one of three stations, which differ by up to 0.1
/// mm; noise of 0.05 mm. A third of the wheels is turned once. Station 1 shifts on the days of `shifts`.
std::vector<WheelSeries> fleet(unsigned seed, int days, const std::vector<std::pair<int, double>>& shifts) {
    std::mt19937_64 engine(seed);
    std::normal_distribution<double> noise(0.0, 0.05);
    std::uniform_real_distribution<double> any(0.0, 1.0);
    std::vector<WheelSeries> wheels(120);
    for (std::size_t w = 0; w < wheels.size(); ++w) {
        const double wear = 0.002 + 0.018 * any(engine);
        const int turned = w % 3 == 0 ? static_cast<int>(any(engine) * days) : days;
        for (int day = 0; day < days; ++day) {
            const auto station = static_cast<int>(3.0 * any(engine));
            double value = 30.0 - wear * (day < turned ? day : day - turned - 100) + 0.05 * station + noise(engine);
            for (const auto& [from, size] : shifts) {
                value += station == 1 && day >= from ? size : 0.0;
            }
            wheels[w].readings.push_back({kFirstDay + day + any(engine), value, station});
        }
        if (turned < days) {
            wheels[w].lifeStarts = {wheels[w].readings[static_cast<std::size_t>(turned)].day};
        }
    }
    return wheels;
}

TEST(StationDays, ShiftsOfASensorAreNamed) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const std::vector<std::pair<int, double>> truth = {{120, 0.12}, {200, -0.2}, {220, 0.1}};
        const std::vector<WheelSeries> wheels = fleet(seed, 300, truth);
        const std::vector<StationShift> found = shiftsOfStation(wheels, 1);
        ASSERT_EQ(found.size(), truth.size()) << seed;
        for (std::size_t i = 0; i < truth.size(); ++i) {
            EXPECT_NEAR(found[i].began, kFirstDay + truth[i].first, 1.0) << seed;
            EXPECT_GE(found[i].day, kFirstDay + truth[i].first) << seed;
            EXPECT_LT(found[i].day, kFirstDay + truth[i].first + 3) << seed << ", three days";
            EXPECT_NEAR(found[i].size, truth[i].second, 0.04) << seed;
        }
        EXPECT_TRUE(shiftsOfStation(wheels, 0).empty()) << seed << ": another station's";
        EXPECT_TRUE(shiftsOfStation(wheels, 2).empty()) << seed;
    }
}

TEST(StationDays, WearAndTurningAreNoShifts) {
    for (unsigned seed = 11; seed <= 14; ++seed) {
        const std::vector<WheelSeries> wheels = fleet(seed, 400, {});
        for (int station = 0; station < 3; ++station) {
            EXPECT_TRUE(shiftsOfStation(wheels, station).empty()) << seed << ", station " << station;
            for (const StationDay& day : stationDays(wheels, station)) {
                EXPECT_LT(std::abs(day.residual) * std::sqrt(day.wheels), 0.6) << day.wheels;
                EXPECT_LE(day.wheels, 120);
            }
        }
    }
    EXPECT_TRUE(stationDays({}, 0).empty());
    EXPECT_TRUE(stationDays(fleet(1, 5, {}), 7).empty());
}

} // namespace
