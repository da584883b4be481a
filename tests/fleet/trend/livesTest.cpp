// Steps between the lives of a wheel.
#include "fleet/trend/lives.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace kxfleet;

/// A reading each day.
Readings readingsOf(const std::vector<double>& values) {
    Readings readings;
    for (std::size_t i = 0; i < values.size(); ++i) {
        readings.push_back({100.0 + static_cast<double>(i), values[i]});
    }
    return readings;
}

struct StepCase {
    const char* name;
    std::vector<double> values;
    std::vector<double> days;
};

TEST(Lives, StepsUpBeginThem) {
    const StepCase cases[] = {{"none", {30, 29.9, 29.8, 29.7, 29.6, 29.5, 29.4}, {}},
                              {"turned", {28, 27.9, 27.8, 27.7, 32, 31.9, 31.8, 31.7}, {104}},
                              {"a step down is wear", {32, 31.9, 31.8, 31.7, 28, 27.9, 27.8, 27.7}, {}},
                              {"one wrong reading", {28, 27.9, 27.8, 32.7, 27.6, 27.5, 27.4, 27.3}, {}},
                              {"a wrong reading beside the step", {28, 27.9, 27.8, 20, 32, 31.9, 31.8, 31.7}, {104}},
                              {"too few behind it", {28, 27.9, 27.8, 27.7, 32, 31.9}, {}},
                              {"small", {28, 27.9, 27.8, 27.7, 28.1, 28, 27.9, 27.8}, {}},
                              {"twice", {28, 27.9, 27.8, 27.7, 32, 31.9, 31.8, 36, 35.9, 35.8}, {104, 107}},
                              {"nothing", {}, {}}};
    for (const StepCase& c : cases) {
        EXPECT_EQ(stepsUp(readingsOf(c.values), {}), c.days) << c.name;
    }
}

TEST(Lives, NoiseIsNoStep) {
    std::mt19937_64 engine(3);
    std::normal_distribution<double> noise(0.0, 0.3);
    std::vector<double> values(2000);
    for (int i = 0; i < 2000; ++i) {
        values[static_cast<std::size_t>(i)] = 30.0 + noise(engine) - 0.001 * i + (i < 1200 ? 0.0 : 4.0);
    }
    EXPECT_EQ(stepsUp(readingsOf(values), {}), std::vector<double>{1300.0});
}

TEST(Lives, LastLifeBeginsAtTheLastStep) {
    const Readings readings = readingsOf({1, 2, 3, 4, 5});
    const std::pair<std::vector<double>, std::size_t> cases[] = {{{}, 5},    {{102}, 3}, {{101, 103.5}, 1},
                                                                 {{104}, 1}, {{99}, 5},  {{102, 200}, 3}};
    for (const auto& [starts, size] : cases) {
        EXPECT_EQ(lastLife(readings, starts).size(), size);
    }
    EXPECT_TRUE(lastLife({}, {1}).empty());
    EXPECT_EQ(merged({10, 50}, {10.5, 30, 49.5}, 1.0), (std::vector<double>{10, 30, 49.5}));
}

/// Three stations in turn; one of them measures 0.9 mm less from the 10th reading to the 40th.
TEST(Lives, AStationThatMeasuresDifferentlyBeginsNone) {
    Readings readings;
    for (int i = 0; i < 60; ++i) {
        const int station = i % 7 % 3;
        readings.push_back({100.0 + i, 30.0 - 0.01 * i - (station == 1 && i >= 10 && i < 40 ? 0.9 : 0.0), station});
    }
    EXPECT_TRUE(stepsUp(readings, {}).empty());
    for (std::size_t i = 24; i < readings.size(); ++i) {
        readings[i].value += 1.5;
    }
    EXPECT_EQ(stepsUp(readings, {}), std::vector<double>{124.0});
}

} // namespace
