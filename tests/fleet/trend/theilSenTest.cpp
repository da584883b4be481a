// Lines by medians, beside scipy.stats.theilslopes of SciPy 1.10.
#include "fleet/trend/theilSen.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct TheilSenCase {
    const char* name;
    std::vector<double> x;
    std::vector<double> y;
    double slope, intercept, low, high;
};

TEST(TheilSen, SameAsSciPy) {
    const TheilSenCase cases[] = {{"an outlier",
                                   {0, 1, 2, 3, 4, 5, 6, 7, 8, 9},
                                   {30.0, 29.98, 29.97, 29.94, 29.99, 29.90, 29.87, 31.5, 29.83, 29.80},
                                   -0.0216666666666665,
                                   30.0525,
                                   -0.024285714285714022,
                                   -0.010000000000001563},
                                  {"ties in x and y",
                                   {0, 0, 1, 1, 2, 2, 5, 5},
                                   {1.0, 1.0, 1.25, 1.5, 1.5, 1.75, 3.0, 3.5},
                                   0.4083333333333333,
                                   0.8875,
                                   0.25,
                                   0.5},
                                  {"not in order", {3, 1, 1}, {4, 2, 2.5}, 0.875, 1.625, 0.75, 1.0},
                                  {"two points", {0, 1}, {1, 2}, 1, 1, 1, 1}};
    for (const TheilSenCase& c : cases) {
        const auto line = kxfleet::theilSen(c.x, c.y);
        ASSERT_TRUE(line) << c.name;
        EXPECT_NEAR(line->slope, c.slope, 1e-12) << c.name;
        EXPECT_NEAR(line->intercept, c.intercept, 1e-12) << c.name;
        EXPECT_NEAR(line->low, c.low, 1e-12) << c.name;
        EXPECT_NEAR(line->high, c.high, 1e-12) << c.name;
    }
}

TEST(TheilSen, NoLineWithoutTwoPlaces) {
    const std::vector<double> same = {2, 2, 2};
    const std::vector<double> values = {1, 2, 3};
    EXPECT_FALSE(kxfleet::theilSen({}, {}));
    EXPECT_FALSE(kxfleet::theilSen(same, values));
    EXPECT_FALSE(kxfleet::theilSen(std::vector<double>{1, 2}, values));
}

} // namespace
