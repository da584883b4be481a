// Limits that will be reached soon.
#include "fleet/alarms/announcements.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace kxfleet;

constexpr Limits kThickness{24.0, 33.0};

/// Two readings a day over 40 days, noise of 0.02 mm; the last one shows `level`.
Readings wear(double level, double perDay, unsigned seed = 1) {
    std::mt19937_64 engine(seed);
    std::normal_distribution<double> noise(0.0, 0.02);
    Readings readings;
    for (int half = -79; half <= 0; ++half) {
        readings.push_back({20000.0 + half / 2.0, level + perDay * half / 2.0 + noise(engine)});
    }
    return readings;
}

TEST(Announcements, ComeBeforeTheLimit) {
    struct Case {
        const char* name;
        double level, perDay;
        bool isDue;
    };
    const Case cases[] = {{"far away", 26.0, -0.02, false},
                          {"fifty days to go", 25.0, -0.02, false},
                          {"ten days to go", 24.2, -0.02, true},
                          {"ten days to the upper limit", 32.8, 0.02, true},
                          {"reached", 23.9, -0.02, true},
                          {"near the limit, but not moving", 24.15, 0.0, false},
                          {"moving away from it", 24.2, 0.02, false}};
    for (const Case& c : cases) {
        for (unsigned seed = 1; seed <= 5; ++seed) {
            const std::optional<DaysToLimit> announced = announcedAfter(wear(c.level, c.perDay, seed), kThickness);
            EXPECT_EQ(announced.has_value(), c.isDue) << c.name << ", seed " << seed;
            if (announced && c.level > kThickness.low) {
                EXPECT_NEAR(announced->days, 10.0, 3.0) << c.name << ", seed " << seed;
            }
        }
    }
    EXPECT_FALSE(announcedAfter({}, kThickness));
    EXPECT_FALSE(announcedAfter(wear(24.2, -0.02), {}));
}

TEST(Announcements, SingleReadingsSayNothing) {
    Readings life = wear(24.2, -0.02);
    life.push_back({life.back().day + 1.0, 32.0}); // just turned
    EXPECT_FALSE(dueAfter(life, kThickness));
    life.back().value = 24.18;
    EXPECT_TRUE(dueAfter(life, kThickness));
    // So early that only the last reading could tell it.
    Readings first(life.end() - 5, life.end());
    EXPECT_FALSE(announcedAfter(first, kThickness));
}

TEST(Announcements, KeepTheirLead) {
    const Readings life = wear(25.0, -0.02); // 50 days to go
    AnnounceRule rule;
    EXPECT_FALSE(announcedAfter(life, kThickness, rule));
    rule.lead = 30.0;
    EXPECT_TRUE(announcedAfter(life, kThickness, rule));
}

} // namespace
