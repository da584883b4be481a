// Values that change at once.
#include "fleet/trend/step.h"

#include "fleet/trend/theilSen.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

using namespace kxfleet;

struct StepTestCase {
    const char* name;
    std::vector<double> values;
    bool isStep;
};

TEST(Step, IsToldFromALine) {
    const StepTestCase cases[] = {{"nothing", {}, false},
                                  {"too few", {1, 1, 5}, false},
                                  {"a line", {1, 2, 3, 4, 5, 6}, false},
                                  {"a level", {5, 5, 5, 5, 5, 5}, false},
                                  {"noise", {5.0, 5.1, 4.9, 5.0, 4.9, 5.1, 5.0, 5.1}, false},
                                  {"up", {1, 1.1, 0.9, 1, 5, 5.1, 4.9, 5}, true},
                                  {"down, late", {5, 5.1, 4.9, 5, 5.1, 5, 1, 1.1}, true},
                                  {"one wrong value at the end", {5, 5.1, 4.9, 5, 5.1, 5, 4.9, 1}, false},
                                  {"far from zero", {1e6 + 1, 1e6 + 1, 1e6 + 1, 1e6 + 3, 1e6 + 3, 1e6 + 3}, true}};
    for (const StepTestCase& c : cases) {
        std::vector<double> days(c.values.size());
        std::iota(days.begin(), days.end(), 0.0);
        std::vector<double> residuals = c.values;
        if (const std::optional<TheilSenLine> line = theilSen(days, c.values)) {
            for (std::size_t i = 0; i < residuals.size(); ++i) {
                residuals[i] -= line->intercept + line->slope * days[i];
            }
        }
        EXPECT_EQ(isStep(c.values, residuals), c.isStep) << c.name;
    }
}

} // namespace
