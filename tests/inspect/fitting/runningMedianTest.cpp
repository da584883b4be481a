// Medians over a moving window.
#include "inspect/fitting/runningMedian.h"

#include "inspect/fitting/median.h"

#include <gtest/gtest.h>

#include <random>

TEST(RunningMedian, IsThatOfEachWindow) {
    std::mt19937 random(7);
    for (const std::size_t count : {0, 1, 2, 6, 7, 64, 257}) {
        for (const std::size_t half : {0, 1, 3, 31, 128}) {
            std::vector<double> values;
            for (std::size_t i = 0; i < count; ++i) {
                values.push_back(static_cast<double>(random() % 50) - 20.0); // with ties
            }
            std::vector<double> expected = values;
            for (std::size_t i = half; i + half < count; ++i) {
                const auto middle = values.begin() + static_cast<std::ptrdiff_t>(i);
                const auto wide = static_cast<std::ptrdiff_t>(half);
                expected[i] = KxInspect::detail::median(std::vector<double>(middle - wide, middle + wide + 1));
            }
            EXPECT_EQ(KxInspect::detail::runningMedian(values, half), expected) << count << " " << half;
        }
    }
}
