// Where values go.
#include "fleet/trend/trend.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace kxfleet;

Readings line(double level, double slope, int days, double noise = 0.0, unsigned seed = 1) {
    std::mt19937_64 engine(seed);
    std::normal_distribution<double> normal(0.0, 1.0);
    Readings readings;
    for (int day = 1 - days; day <= 0; ++day) {
        readings.push_back({20000.0 + day, level + slope * day + noise * normal(engine)});
    }
    return readings;
}

TEST(Trend, TellsWhenALimitIsReached) {
    struct Case {
        double level, slope;
        Limits limits;
        std::optional<double> days;
        const char* reason;
    };
    const Case cases[] = {{25.0, -0.125, {22.0, 33.0}, 24.0, ""},
                          {25.0, 0.25, {22.0, 33.0}, 32.0, ""},
                          {25.0, 0.25, {22.0, {}}, {}, "the value does not move towards a limit"},
                          {25.0, 0.0, {22.0, 33.0}, {}, "the value does not move towards a limit"},
                          {21.5, -0.125, {22.0, 33.0}, 0.0, ""},
                          {25.0, -0.125, {}, {}, "the value has no limit"}};
    for (const Case& c : cases) {
        const Trend trend = trendOf(line(c.level, c.slope, 40), c.limits);
        ASSERT_TRUE(trend.line);
        EXPECT_NEAR(trend.line->slope, c.slope, 1e-12);
        EXPECT_NEAR(trend.level, c.level, 1e-9);
        EXPECT_EQ(trend.daysToLimit.has_value(), c.days.has_value());
        EXPECT_EQ(trend.daysReason, c.reason);
        if (c.days) {
            EXPECT_NEAR(trend.daysToLimit->days, *c.days, 1e-9);
            EXPECT_NEAR(trend.daysToLimit->soonest, *c.days, 1e-9);
            EXPECT_NEAR(trend.daysToLimit->latest.value(), *c.days, 1e-9);
            EXPECT_EQ(trend.daysToLimit->isLow, c.slope < 0.0);
        }
    }
}

TEST(Trend, SaysWhyThereIsNone) {
    const std::pair<Readings, const char*> cases[] = {{{}, "there is no reading"},
                                                      {line(25, 0, 7), "fewer than 8 readings"},
                                                      {Readings(10, {5.0, 1.0}), "the readings span less than 7 days"}};
    for (const auto& [readings, reason] : cases) {
        const Trend trend = trendOf(readings, {22.0, {}});
        EXPECT_FALSE(trend.line);
        EXPECT_FALSE(trend.daysToLimit);
        EXPECT_EQ(trend.reason, reason);
        EXPECT_EQ(trend.daysReason, "there is no trend");
    }
}

TEST(Trend, OldReadingsAndOutliersDoNotCount) {
    Readings readings = line(25.0, -0.125, 100, 0.01);
    Readings all = line(60.0, 3.0, 80);
    for (Reading& r : all) {
        r.day -= 400.0;
    }
    readings[40].value = 90.0;
    all.insert(all.end(), readings.begin(), readings.end());
    const Trend trend = trendOf(all, {22.0, 33.0});
    EXPECT_EQ(trend.readings, 100u);
    EXPECT_EQ(trend.outliers, std::vector<std::size_t>{120});
    EXPECT_NEAR(trend.daysToLimit.value().days, 24.0, 0.3);
    EXPECT_NEAR(trend.noise, 0.01, 0.003);
}

/// A hundred days without change, then a month with -0.1 mm a day.
TEST(Trend, FollowsABend) {
    Readings readings = line(25.0, 0.0, 130, 0.01);
    for (std::size_t i = 100; i < readings.size(); ++i) {
        readings[i].value -= 0.1 * static_cast<double>(i - 99);
    }
    const Trend trend = trendOf(readings, {21.0, {}});
    ASSERT_TRUE(trend.line);
    EXPECT_NEAR(trend.line->slope, -0.1, 0.005);
    EXPECT_NEAR(trend.level, 22.0, 0.05);
    EXPECT_NEAR(trend.daysToLimit.value().days, 10.0, 1.0);
    EXPECT_LE(trend.readings, 34u);
    // A bend is not followed into too few readings.
    const Trend whole = trendOf(readings, {21.0, {}}, {.fewest = 70});
    EXPECT_EQ(whole.readings, 130u);
}

TEST(Trend, AtOnceIsNoTrend) {
    Readings readings = line(25.0, 0.0, 12, 0.01);
    for (std::size_t i = 7; i < readings.size(); ++i) {
        readings[i].value -= 1.0;
    }
    const Trend trend = trendOf(readings, {20.0, {}});
    EXPECT_TRUE(trend.line);
    EXPECT_TRUE(trend.changedAtOnce);
    EXPECT_FALSE(trend.daysToLimit);
    EXPECT_EQ(trend.daysReason, "the value changed at once");
}

/// Of 400 simulated wheels the interval of the slope, of the level and of the day hold the truth in 95 %: 380, with a
/// standard deviation of 4.4.
TEST(Trend, IntervalsHoldTheTruth) {
    int slopes = 0;
    int levels = 0;
    int days = 0;
    for (unsigned seed = 1; seed <= 400; ++seed) {
        const Trend trend = trendOf(line(25.0, -0.02, 60, 0.05, seed), {24.0, {}});
        ASSERT_TRUE(trend.line);
        slopes += trend.line->low <= -0.02 && -0.02 <= trend.line->high ? 1 : 0;
        levels += std::abs(trend.level - 25.0) <= trend.levelHalfWidth ? 1 : 0;
        ASSERT_TRUE(trend.daysToLimit);
        days += trend.daysToLimit->soonest <= 50.0 && trend.daysToLimit->latest.value_or(1e9) >= 50.0 ? 1 : 0;
    }
    for (const int held : {slopes, levels, days}) {
        EXPECT_GE(held, 363);
        EXPECT_LE(held, 394);
    }
    RecordProperty("held", std::to_string(slopes) + " " + std::to_string(levels) + " " + std::to_string(days));
}

} // namespace
