// The analysis of variance of a study, by an example calculated by hand.
#include "tools/study/accuracy.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using kxstudy::Accuracy;
using kxstudy::Reading;
using kxstudy::StudiedValue;

/// Two parts, two stations, two readings each; the errors of the cells are 1, 5; 2, 10 +- 1.
StudiedValue example() {
    StudiedValue value = {"train", "distance", "mm", 100.0, 2};
    const double means[2][2] = {{1.0, 5.0}, {2.0, 10.0}};
    for (int part = 0; part < 2; ++part) {
        for (int station = 0; station < 2; ++station) {
            for (const double off : {-1.0, 1.0}) {
                const double truth = 1360.0 + part;
                value.readings.push_back({part, station, truth + means[part][station] + off, truth});
            }
        }
    }
    return value;
}

TEST(Accuracy, SeparatesTheComponents) {
    StudiedValue value = example();
    // Parts that a station did not measure twice count for bias and largest error only.
    value.readings.push_back({2, 0, 0.0, 4.5});
    value.readings.push_back({2, 1, 13.5, 0.0});
    value.readings.push_back({3, 1, std::nan(""), 0.0});
    value.readings[0].interval = {1359.5f, 1360.5f};
    value.readings[1].interval = {1361.5f, 1362.5f};
    value.readings[2].interval = {1363.5f, 1364.5f};
    value.readings[3].interval = {1359.0f, 1367.0f};
    const Accuracy a = analyse(value);
    EXPECT_EQ(a.readings, 10);
    EXPECT_EQ(a.missing, 1);
    EXPECT_NEAR(a.repeatability, std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(a.reproducibility, std::sqrt(16.0 + 3.0), 1e-12);
    EXPECT_NEAR(a.percentOf(100.0), 6.0 * std::sqrt(21.0), 1e-9);
    EXPECT_NEAR(a.bias, 4.5, 1e-12);
    EXPECT_NEAR(a.largest, 13.5, 1e-12);
    EXPECT_EQ(a.intervals, 4);
    EXPECT_DOUBLE_EQ(a.held, 0.5);
}

TEST(Accuracy, WithoutEnoughReadingsIsUnknown) {
    StudiedValue value = example();
    value.readings.resize(4); // one part
    EXPECT_TRUE(std::isnan(analyse(value).deviation()));
    EXPECT_NEAR(analyse(value).bias, 3.0, 1e-12);
    value.readings.clear();
    EXPECT_TRUE(std::isnan(analyse(value).bias));
    EXPECT_NE(
        kxstudy::accuracyTable({value}).find("| `train` | distance | mm | 0 | 0 | - | - | 100.00 | - | - | - | - |"),
        std::string::npos);
}

} // namespace
