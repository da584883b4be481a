// The level histogram: both sets of keys, the rank, the text file, and invalid steps.
#include "support/tempFiles.h"
#include "support/testing.h"

using namespace testing_support;

namespace {

constexpr float kNoBin = -2147483648.0f;

using Levels = QMap<float, int>;

template <typename Point>
class LevelHistogramOf : public testing::Test {};
TYPED_TEST_SUITE(LevelHistogramOf, PointTypes);

TYPED_TEST(LevelHistogramOf, KeepsLevelsAndBinNumbersSideBySide) {
    const struct {
        const char* desc;
        QList<float> ys;
        float step;
        Levels expected;
        float knownMinY = kNaN; ///< a known range is used unchanged
    } cases[] = {
        {"both sets coincide", {0.0f, 0.4f, 1.2f, 2.0f}, 1.0f, {{0, 2}, {1, 1}, {2, 1}}},
        {"shifted", {10.0f, 10.4f, 11.2f, 12.0f}, 1.0f, {{0, 2}, {1, 1}, {2, 1}, {10, 0}, {11, 0}, {12, 0}}},
        {"half steps", {1.0f, 1.5f, 1.75f}, 0.5f, {{0, 1}, {1, 2}, {1.5f, 0}, {2, 0}}},
        {"one height", {5.0f, 5.0f}, 1.0f, {{0, 2}, {5, 0}}},
        {"no points", {}, 1.0f, {}},
        {"NaN y has no bin", {0.0f, kNaN, 1.0f}, 1.0f, {{kNoBin, 1}, {0, 1}, {1, 1}}},
        {"only NaN", {kNaN, kNaN}, 1.0f, {{kNoBin, 2}}},
        {"step 0", {3.0f, 4.0f}, 0.0f, {{kNoBin, 2}}},
        {"step NaN", {3.0f, 4.0f}, kNaN, {{kNoBin, 2}}},
        {"negative step", {0.0f, 1.0f, 2.5f}, -1.0f, {{-2, 1}, {-1, 1}, {0, 1}}},
        {"more levels than integers", {0.0f, 1.0f}, 1e-12f, {{kNoBin, 1}, {0, 1}}},
        {"more levels than are entered", {0.0f, 1.0f}, 1.0f / 16777216.0f, {{0, 1}, {16777216, 1}}},
        {"infinite heights", {-kInf, 0.0f, kInf}, 1.0f, {{kNoBin, 3}}},
        {"known range", {1.0f, 2.0f}, 1.0f, {{0, 0}, {1, 1}, {2, 1}}, 0.0f},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxPointCloud<TypeParam> cloud;
        for (const float y : c.ys) {
            cloud.points.append(TypeParam());
            cloud.points.last().x = 0.0f;
            cloud.points.last().y = y;
        }
        if (!std::isnan(c.knownMinY)) {
            cloud.calcRange();
            cloud.minY = c.knownMinY;
        }
        KxLevelHistogram<TypeParam> histogram;
        histogram.levels.insert(77.0f, 7); // replaced
        EXPECT_EQ(histogram.calcFromPointCloud(cloud, c.step), c.expected.size());
        if (std::isnan(c.knownMinY)) { // one unknown bound makes the whole range new
            cloud.minY = -9.0f;
            cloud.maxY = kNaN;
            EXPECT_EQ(histogram.calcFromPointCloud(cloud, c.step), c.expected.size());
        }
        EXPECT_EXACT(histogram.levels, c.expected);
        EXPECT_EQ(histogram.count(), c.expected.size());
    }
}

TEST(LevelHistogram, MassCenterIsARankWithWrappedProducts) {
    const std::tuple<const char*, Levels, float> cases[] = {
        {"ranks, not levels", {{0, 2}, {1, 1}, {2, 1}}, 1.75f},
        {"empty", {}, kNaN},
        {"no counts", {{1, 0}, {2, 0}}, kNaN},
        {"2^30 * 4 is 0 modulo 2^32", {{1, 0}, {2, 0}, {3, 0}, {4, 1 << 30}}, 0.0f},
        {"2^30 * 2 becomes negative", {{1, 0}, {2, 1 << 30}}, -2.0f},
        {"the sums do not wrap", {{1, 2147483647}, {2, 1 << 29}}, 3221225471.0f / 2684354559.0f},
    };
    for (const auto& [desc, levels, expected] : cases) {
        KxLevelHistogram<KxPointXY> histogram;
        histogram.levels = levels;
        EXPECT_EXACT(histogram.calcMassCenter(), expected) << desc;
    }
}

TEST(LevelHistogram, WritesLines) {
    const TempFiles files;
    KxLevelHistogram<KxPointXYZ> histogram;
    histogram.levels = {{12.5f, 3}, {0.0f, 2}, {-0.1f, 12345}, {kNoBin, 1}, {kInf, 4}};
    ASSERT_TRUE(histogram.writeToCSV(files.path("levels.csv")));
    EXPECT_EQ("-2147483648.000000;1\r\n-0.100000;12345\r\n0.000000;2\r\n12.500000;3\r\n inf;4\r\n",
              files.read("levels.csv"));
    KxLevelHistogram<KxPointXYZ> copy(histogram);
    histogram.clear();
    EXPECT_TRUE(histogram.count() == 0 && copy.count() == 5);
    ASSERT_TRUE(histogram.writeToCSV(files.path("levels.csv"))); // replaces the old one
    EXPECT_EQ("", files.read("levels.csv"));
    EXPECT_FALSE(histogram.writeToCSV(files.path("missing/levels.csv")) || histogram.writeToCSV(QString()));
}

} // namespace
