// Ranges and ticks, colours of heights, heat maps and PNG.
#include "report/elements/axis.h"
#include "report/elements/heatMap.h"
#include "report/elements/png.h"
#include "report/pageReader.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace kxreport;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Range, GrowsAndIsPadded) {
    Range range;
    EXPECT_TRUE(range.isEmpty());
    EXPECT_EQ(range.padded(0.5).min, 0.0);
    EXPECT_EQ(range.padded(0.5).max, 1.0);
    for (const double value : {3.0, double(kNaN), -kInfinity, kInfinity}) {
        range.include(value);
    }
    EXPECT_FALSE(range.isEmpty());
    EXPECT_EQ(range.size(), 0.0);
    EXPECT_EQ(range.padded(0.1).min, 2.5); // a single number
    EXPECT_EQ(range.padded(0.1).max, 3.5);
    EXPECT_EQ((Range{-2000.0, -2000.0}.padded(0.1).min), -2002.0);
    range.include(-7.0);
    EXPECT_EQ(range.middle(), -2.0);
    EXPECT_EQ(range.padded(0.1).min, -8.0);
    EXPECT_EQ(range.padded(0.1).max, 4.0);
}

TEST(Ticks, StandAtRoundNumbers) {
    struct Case {
        Range range;
        int wanted;
        double smallestStep;
        std::vector<double> at;
        int decimals;
    };
    const Case cases[] = {
        {{0, 10}, 5, 0, {0, 2, 4, 6, 8, 10}, 0},
        {{-3, 11}, 3, 0, {0, 5, 10}, 0},
        {{-1.1, 1.1}, 2, 0, {-1, 0, 1}, 0},
        {{0, 1.49}, 1, 0, {0, 1}, 0},
        {{0, 1.5}, 1, 0, {0}, 0}, // step 2
        {{0, 3.5}, 1, 0, {0}, 0}, // step 5
        {{0, 7.5}, 1, 0, {0}, 0}, // step 10
        {{1359.62, 1360.21}, 5, 0, {1359.7, 1359.8, 1359.9, 1360.0, 1360.1, 1360.2}, 1},
        {{0.013, 0.041}, 2, 0, {0.02, 0.03, 0.04}, 2},
        {{0.5, 3.5}, 30, 1, {1, 2, 3}, 0},
        {{-0.4, 0.4}, 8, 0, {-0.4, -0.3, -0.2, -0.1, 0, 0.1, 0.2, 0.3, 0.4}, 1},
        {{5, 5}, 3, 0, {}, 0},
        {{}, 3, 0, {}, 0},
        {{0, 1}, 0, 0, {}, 0},
    };
    for (const Case& c : cases) {
        const Ticks ticks = makeTicks(c.range, c.wanted, c.smallestStep);
        ASSERT_EQ(ticks.at.size(), c.at.size()) << c.range.min << " to " << c.range.max;
        for (size_t i = 0; i < c.at.size(); ++i) {
            EXPECT_NEAR(ticks.at[i], c.at[i], 1e-9);
        }
        EXPECT_EQ(ticks.decimals, c.decimals) << c.range.min << " to " << c.range.max;
    }
}

TEST(Scales, BecomeEqual) {
    Range x{0.0, 10.0}, y{100.0, 104.0};
    makeScalesEqual(x, y, 100.0, 50.0); // x needs 0.1 for a pixel, y 0.08
    EXPECT_EQ(x.min, 0.0);
    EXPECT_EQ(x.max, 10.0);
    EXPECT_DOUBLE_EQ(y.min, 99.5);
    EXPECT_DOUBLE_EQ(y.max, 104.5);
    makeScalesEqual(x, y, 100.0, 10.0); // now y needs 0.5
    EXPECT_DOUBLE_EQ(x.min, -20.0);
    EXPECT_DOUBLE_EQ(x.max, 30.0);
    EXPECT_DOUBLE_EQ(y.max, 104.5);
}

TEST(Heights, BecomeColours) {
    EXPECT_EQ(colourText(heightColour(0.0)), "#1b1f5e");
    EXPECT_EQ(colourText(heightColour(0.2)), "#1f4e8c");
    EXPECT_EQ(colourText(heightColour(0.9)), "#ced94f"); // halfway from #9fcb52 to #fde74c
    EXPECT_EQ(colourText(heightColour(1.0)), "#fde74c");
    EXPECT_EQ(heightColour(-3.0), heightColour(0.0));
    EXPECT_EQ(heightColour(7.0), heightColour(1.0));
    EXPECT_EQ(colourText(0x00000f), "#00000f");
    double darker = -1.0; // lighter and lighter, as the eye weighs the channels (ITU-R BT.709)
    for (int i = 0; i <= 100; ++i) {
        const Rgb c = heightColour(i / 100.0);
        const double light = 0.2126 * (c >> 16) + 0.7152 * (c >> 8 & 0xff) + 0.0722 * (c & 0xff);
        EXPECT_GT(light, darker);
        darker = light;
    }
}

TEST(HeatMap, EveryCellHasItsColour) {
    const Raster raster{3, 2, {10.0f, 15.0f, 20.0f, kNaN, 5.0f, 30.0f}};
    const auto colour = [](double part) { return static_cast<int>(heightColour(part)); };
    using Rows = std::vector<std::vector<int>>;
    // The 255 colours are 1/254 apart; 15 is the middle one.
    EXPECT_EQ(page_test::readPng(png(heatImage(raster, {10.0, 20.0}))),
              (Rows{{colour(0.0), colour(0.5), colour(1.0)}, {-1, colour(0.0), colour(1.0)}}));
    EXPECT_EQ(page_test::readPng(png(heatImage({1, 1, {7.0f}}, {7.0, 7.0}))), (Rows{{colour(0.0)}}));
    EXPECT_EQ(heatImage(raster, {10.0, 20.0}).palette.size(), 256u);
}

TEST(Png, IsTheFileOfTheStandard) {
    // 3 x 1 pixels. Lengths, names and checks of the chunks were computed with another program (zlib's crc32).
    const QByteArray file = png({3, 1, {1, 0, 2}, {0xffffff, 0x102030, 0xa0b0c0}});
    EXPECT_EQ(file.left(8), QByteArray("\x89PNG\r\n\x1a\n"));
    EXPECT_EQ(file.mid(8, 25).toHex(), "0000000d49484452000000030000000108030000002c3ee486");
    EXPECT_EQ(file.mid(33, 21).toHex(), "00000009504c5445ffffff102030a0b0c0eab44d0b");
    EXPECT_EQ(file.mid(54, 13).toHex(), "0000000174524e530040e6d866");
    EXPECT_EQ(file.right(12).toHex(), "0000000049454e44ae426082");
    EXPECT_EQ(page_test::readPng(file), (std::vector<std::vector<int>>{{0x102030, -1, 0xa0b0c0}}));
}

} // namespace
