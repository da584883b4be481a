// Sorting and the index by z, against the plain definitions.
#include "cloud/plainCloud.h"
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxPointCloud.h>

#include <gtest/gtest.h>

#include <bit>
#include <limits>

using namespace KxMath;
using namespace testing_support;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

bool isSameIndex(const QMap<float, int>& a, const QMap<float, int>& b) {
    const auto isSame = [](const auto& left, const auto& right) {
        return std::bit_cast<unsigned>(left.first) == std::bit_cast<unsigned>(right.first) &&
               left.second == right.second;
    };
    return std::equal(a.constKeyValueBegin(), a.constKeyValueEnd(), b.constKeyValueBegin(), b.constKeyValueEnd(),
                      isSame);
}

KxSortOrder order(int value) {
    return static_cast<KxSortOrder>(value);
}

/// Numbers the points by their colour, so that a comparison of colours compares the order.
void number(QList<KxPointXYZRGB>& points) {
    for (qsizetype i = 0; i < points.size(); ++i) {
        points[i].rgb = static_cast<unsigned>(i);
    }
}

bool isSameOrder(const QList<KxPointXYZRGB>& a, const QList<KxPointXYZRGB>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const KxPointXYZRGB& p, const KxPointXYZRGB& q) { return p.rgb == q.rgb; });
}

/// Sorts by the library and by definition and compares order and index.
testing::AssertionResult sortsAsDefined(const QList<KxPointXYZRGB>& points, int first, int second) {
    KxPointCloud<KxPointXYZRGB> cloud;
    cloud.points = points;
    cloud.zIndexBuilt = 2;
    cloud.sort(order(first), order(second));
    QList<KxPointXYZRGB> expected = points;
    QMap<float, int> index;
    plain::sortInSpace(expected, first, second, index);
    if (isSameOrder(cloud.points, expected) && isSameIndex(cloud.zIndex, index) &&
        cloud.zIndexBuilt == (second == 0 ? 2 : 1)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "orders " << first << ", " << second << "; points "
                                       << testing::PrintToString(exact(points)) << "\n sorted "
                                       << testing::PrintToString(exact(cloud.points)) << "\n expected "
                                       << testing::PrintToString(exact(expected));
}

} // namespace

TEST(CloudSort, AllSmallCloudsInSpace) {
    constexpr float kKeys[] = {1, 2, kNaN};
    for (int size = 0; size <= 5; ++size) {
        int combinations = 1;
        for (int i = 0; i < size; ++i) {
            combinations *= 9;
        }
        for (int combination = 0; combination < combinations; ++combination) {
            QList<KxPointXYZRGB> points;
            for (int i = 0, rest = combination; i < size; ++i, rest /= 9) {
                points.append({kKeys[rest % 3], 0, kKeys[rest / 3 % 3], static_cast<unsigned>(i)});
            }
            // With 5 points only the orders that sort twice: they contain the others.
            for (const int second : {1, 2, 0}) {
                for (const int first : {1, 2, 0}) {
                    if (size < 5 || (first != 0 && second == 1)) {
                        ASSERT_TRUE(sortsAsDefined(points, first, second));
                    }
                }
            }
        }
    }
}

TEST(CloudSort, NastyCloudsInSpace) {
    Nasty nasty(1);
    for (int round = 0; round < 300; ++round) {
        nasty.nextCase();
        QList<KxPointXYZRGB> points = nasty.points<KxPointXYZRGB>(nasty.size());
        number(points);
        ASSERT_TRUE(sortsAsDefined(points, nasty.pick(std::array{0, 1, 2, 7}), nasty.pick(std::array{0, 1, 1, 2, -1})));
    }
}

// Rising z between points with NaN z: each key lies in another run than the one before, and the stretches that are
// sorted by x are long, many and overlap in every way.
TEST(CloudSort, InterleavedRunsBetweenNaN) {
    Nasty nasty(2);
    for (int round = 0; round < 300; ++round) {
        nasty.nextCase();
        QList<KxPointXYZRGB> points;
        const int size = 1 + nasty.below(250);
        const int runLength = 1 + nasty.below(round % 3 == 0 ? size : 40);
        for (int i = 0; i < size; ++i) {
            KxPointXYZRGB p = nasty.point<KxPointXYZRGB>();
            const bool isGap = i > 0 && i % runLength == 0;
            p.z = isGap ? kNaN : static_cast<float>(nasty.below(round % 4 == 0 ? 30 : 3 * size));
            points.append(p);
        }
        number(points);
        ASSERT_TRUE(sortsAsDefined(points, nasty.pick(std::array{1, 2}), 1));
    }
}

TEST(CloudSort, ByXInThePlaneWhateverTheSecondOrder) {
    Nasty nasty(3);
    for (int round = 0; round < 300; ++round) {
        nasty.nextCase();
        KxPointCloud<KxPointXY> cloud;
        cloud.points = nasty.points<KxPointXY>(nasty.size());
        cloud.zIndexBuilt = 5;
        QList<KxPointXY> expected = cloud.points;
        const int first = nasty.below(3);
        plain::bubbleSort(expected, 0, expected.size() - 1, &KxPointXY::x, first);
        cloud.sort(order(first), order(nasty.below(3)));
        ASSERT_EQ(exact(cloud.points), exact(expected));
        ASSERT_EQ(cloud.zIndexBuilt, 5);
    }
}

// Enough points for each way of sorting; bubbles would take too long, so the runs between NaN go to the standard
// library.
TEST(CloudSort, ManyPointsInThePlane) {
    Nasty nasty(4);
    for (const int size : {150, 199, 200, 201, 5000, 19999, 20000, 70000}) {
        for (int round = 0; round < 12; ++round) {
            nasty.nextCase();
            KxPointCloud<KxPointXY> cloud;
            const bool isRising = nasty.chance(50);
            const int kind = round % 4;
            for (int i = 0; i < size; ++i) {
                const float mixed = nasty.chance(10) ? nasty.pick(std::array{0.0f, -0.0f}) : nasty.value();
                const float steady = static_cast<float>(i / 3) * (isRising ? 1.0f : -1.0f);
                const float gap = kind == 1 && nasty.below(size) < 3 ? kNaN : mixed;
                cloud.points.append({kind < 2 ? gap : kind == 2 ? steady : steady + mixed, static_cast<float>(i)});
            }
            QList<KxPointXY> expected = cloud.points;
            const int first = 1 + nasty.below(2);
            for (auto run = expected.begin(); run != expected.end();) {
                const auto isGap = [](const KxPointXY& p) { return std::isnan(p.x); };
                const auto end = std::find_if(run, expected.end(), isGap);
                std::stable_sort(run, end, [&](const KxPointXY& a, const KxPointXY& b) {
                    return first == 1 ? a.x < b.x : a.x > b.x;
                });
                run = end == expected.end() ? end : end + 1;
            }
            cloud.sort(order(first), KxSortNone);
            ASSERT_EQ(exact(cloud.points), exact(expected)) << size << " points, case " << round;
        }
    }
}

TEST(CloudSort, IndexHoldsTheLastPositionOfTheRunBefore) {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.zIndex[99] = 99;
    cloud.buildZIndex();
    EXPECT_TRUE(cloud.zIndex.isEmpty());
    EXPECT_EQ(cloud.zIndexBuilt, 1) << "also of an empty cloud";
    cloud.sort(KxSortAscending, KxSortAscending);
    for (const float z : {5.0f, 5.0f, 5.0f, 7.0f, 7.0f}) {
        cloud.points.append({0, 0, z});
    }
    cloud.buildZIndex();
    EXPECT_EQ(cloud.zIndex, (QMap<float, int>{{5, 0}, {7, 2}}));
    cloud.points.append({0, 0, 5});
    cloud.buildZIndex();
    EXPECT_EQ(cloud.zIndex, (QMap<float, int>{{5, 4}, {7, 2}})) << "a z met again overwrites its entry";
}

TEST(CloudSort, LastRunIsNotSortedByXAndStretchesStartOnePointEarly) {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{3, 0, 1}, {9, 1, 1}, {5, 0, 2}, {4, 0, 2}, {2, 0, 3}, {1, 0, 3}};
    cloud.sort(KxSortAscending, KxSortAscending);
    EXPECT_EQ(exact(cloud.points),
              exact(QList<KxPointXYZ>{{3, 0, 1}, {4, 0, 2}, {5, 0, 2}, {9, 1, 1}, {2, 0, 3}, {1, 0, 3}}));
}
