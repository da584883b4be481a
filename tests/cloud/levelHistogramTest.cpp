// The level histogram: both sets of keys, the rank, the text file, and steps that are no steps.
#include "support/bits.h"
#include "support/tempFiles.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <limits>

using namespace KxMath;
using testing_support::TempFiles;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNoBin = -2147483648.0f;

using Levels = QMap<float, int>;

template <typename T>
KxPointCloud<T> cloudOf(const QList<float>& ys) {
    KxPointCloud<T> cloud;
    for (const float y : ys) {
        T p;
        p.x = 0.0f;
        p.y = y;
        cloud.points.append(p);
    }
    return cloud;
}

template <typename T>
void expectLevels(const QList<float>& ys, float step, const Levels& expected) {
    KxPointCloud<T> cloud = cloudOf<T>(ys);
    KxLevelHistogram<T> histogram;
    histogram.levels.insert(77.0f, 7); // replaced
    EXPECT_EQ(expected.size(), histogram.calcFromPointCloud(cloud, step));
    EXPECT_EQ(expected, histogram.levels);
    EXPECT_EQ(expected.size(), histogram.count());
}

} // namespace

TEST(LevelHistogram, KeepsLevelsAndBinNumbersSideBySide) {
    const struct {
        const char* desc;
        QList<float> ys;
        float step;
        Levels expected;
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
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        expectLevels<KxPointXY>(c.ys, c.step, c.expected);
        expectLevels<KxPointXYZ>(c.ys, c.step, c.expected);
        expectLevels<KxPointXYZRGB>(c.ys, c.step, c.expected);
    }
}

TEST(LevelHistogram, CalculatesAnUnknownRangeOnly) {
    auto cloud = cloudOf<KxPointXYZ>({1.0f, 2.0f});
    KxLevelHistogram<KxPointXYZ> histogram;
    histogram.calcFromPointCloud(cloud, 1.0f);
    EXPECT_EQ(2.0f, cloud.maxY);
    cloud.minY = 0.0f; // a known range is taken as it is
    histogram.calcFromPointCloud(cloud, 1.0f);
    EXPECT_EQ((Levels{{0, 0}, {1, 1}, {2, 1}}), histogram.levels);
}

TEST(LevelHistogram, MassCenterIsARankWithWrappedProducts) {
    const struct {
        const char* desc;
        Levels levels;
        float expected;
    } cases[] = {
        {"ranks, not levels", {{0, 2}, {1, 1}, {2, 1}}, 1.75f},
        {"empty", {}, kNaN},
        {"no counts", {{1, 0}, {2, 0}}, kNaN},
        {"2^30 * 4 is 0 modulo 2^32", {{1, 0}, {2, 0}, {3, 0}, {4, 1 << 30}}, 0.0f},
        {"2^30 * 2 becomes negative", {{1, 0}, {2, 1 << 30}}, -2.0f},
        {"the sums do not wrap", {{1, 2147483647}, {2, 1 << 29}}, 3221225471.0f / 2684354559.0f},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxLevelHistogram<KxPointXY> histogram;
        histogram.levels = c.levels;
        EXPECT_EQ(testing_support::exact(c.expected), testing_support::exact(histogram.calcMassCenter()));
    }
}

TEST(LevelHistogram, WritesLines) {
    const TempFiles files;
    KxLevelHistogram<KxPointXYZ> histogram;
    histogram.levels = {{12.5f, 3}, {0.0f, 2}, {-0.1f, 12345}, {kNoBin, 1}, {kInf, 4}};
    ASSERT_TRUE(histogram.writeToCSV(files.path("levels.csv")));
    EXPECT_EQ("-2147483648.000000;1\r\n-0.100000;12345\r\n0.000000;2\r\n12.500000;3\r\n inf;4\r\n",
              files.read("levels.csv"));
    histogram.clear();
    ASSERT_TRUE(histogram.writeToCSV(files.path("levels.csv"))); // replaces the old one
    EXPECT_EQ("", files.read("levels.csv"));
    for (const QString& name : {files.path("missing/levels.csv"), QString()}) {
        EXPECT_FALSE(histogram.writeToCSV(name));
    }
}

TEST(LevelHistogram, CopiesShareUntilOneIsWritten) {
    KxLevelHistogram<KxPointXY> first;
    first.levels.insert(1.0f, 1);
    KxLevelHistogram<KxPointXY> second(first);
    KxLevelHistogram<KxPointXY> third;
    third = second;
    KxLevelHistogram<KxPointXY>& alias = third;
    third = alias;
    second.levels.insert(2.0f, 2);
    third.clear();
    EXPECT_EQ(1, first.count());
    EXPECT_EQ(2, second.count());
    EXPECT_EQ(0, third.count());
}
