// Finding points and taking them out, against the plain definitions.
#include "cloud/plainCloud.h"
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxPointCloud.h>

#include <gtest/gtest.h>

#include <limits>

using namespace KxMath;
using namespace testing_support;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

using Space = KxPointCloud<KxPointXYZ>;

plain::Box nastyBox(Nasty& nasty) {
    const auto bound = [&] { return nasty.chance(50) ? kNaN : nasty.value(); };
    const float minX = bound();
    const float maxX = bound();
    const float minY = bound();
    const float maxY = bound();
    const float minZ = bound();
    return {minX, maxX, minY, maxY, minZ, bound()};
}

template <typename Point>
class CloudQueriesOf : public testing::Test {};
using PointTypes = testing::Types<KxPointXY, KxPointXYZ, KxPointXYZRGB>;
TYPED_TEST_SUITE(CloudQueriesOf, PointTypes);

} // namespace

TYPED_TEST(CloudQueriesOf, BoxQueryAndRemovalByPosition) {
    Nasty nasty(1);
    for (int round = 0; round < 400; ++round) {
        nasty.nextCase();
        KxPointCloud<TypeParam> cloud;
        cloud.points = nasty.points<TypeParam>(nasty.size());
        QList<TypeParam> rest = cloud.points;
        const plain::Box box = nastyBox(nasty);
        QList<int> expected;
        for (qsizetype i = 0; i < rest.size(); ++i) {
            if (box.holds(rest[i])) {
                expected.append(static_cast<int>(i));
            }
        }
        QList<int> found{-5};
        int count = -1;
        if constexpr (std::is_same_v<TypeParam, KxPointXY>) {
            count = cloud.getRangeIndeces(found, box.minX, box.maxX, box.minY, box.maxY);
        } else {
            count = cloud.getRangeIndeces(found, box.minX, box.maxX, box.minY, box.maxY, box.minZ, box.maxZ);
        }
        ASSERT_EQ(exact(found), exact(expected));
        ASSERT_EQ(count, expected.size());

        // Positions in any order, repeated, negative and beyond the cloud.
        const int extra = nasty.size(60);
        for (int i = 0; i < extra; ++i) {
            const int range = nasty.pick(std::array{4, cloud.size() + 5});
            found.insert(nasty.below(static_cast<int>(found.size()) + 1), nasty.below(range) - nasty.below(3));
        }
        if (nasty.chance(20)) {
            found += {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
        }
        QList<int> positions = found;
        const int counted = plain::removePositions(rest, found);
        ASSERT_EQ(cloud.removeIndeces(positions), counted);
        ASSERT_EQ(exact(positions), exact(found)) << "the caller's list is sorted";
        ASSERT_EQ(exact(cloud.points), exact(rest));
    }
}

TYPED_TEST(CloudQueriesOf, RemoveIndecesCountsNegativeAndSkipsBeyond) {
    KxPointCloud<TypeParam> cloud;
    QList<int> positions;
    EXPECT_EQ(cloud.removeIndeces(positions), 0);
    cloud.points = Nasty(2).points<TypeParam>(5);
    QList<TypeParam> shared = cloud.points;
    positions = {2, 0, 2, 99, -1};
    EXPECT_EQ(cloud.removeIndeces(positions), 4);
    EXPECT_EQ(exact(cloud.points), exact(QList<TypeParam>{shared[1], shared[4]}));
    EXPECT_EQ(shared.size(), 5) << "a list that was shared keeps its points";
}

TEST(CloudQueries, FirstPointWithACoordinate) {
    Space cloud;
    EXPECT_EQ(cloud.getIndexX(0), -1);
    cloud.points = {{1, kNaN, 5}, {2, -0.0f, 5}, {2, 0, kNaN}};
    EXPECT_EQ(cloud.getIndexX(2), 1);
    EXPECT_EQ(cloud.getIndexX(2.5f), -1);
    EXPECT_EQ(cloud.getIndexY(0), 1);
    EXPECT_EQ(cloud.getIndexY(kNaN), -1);
    EXPECT_EQ(cloud.getIndexZ(5), 0);
    cloud.zIndexBuilt = 1;
    EXPECT_EQ(cloud.getIndexZ(5), 0) << "without the index";
    KxPointCloud<KxPointXY> flat;
    flat.points = {{1, 7}, {2, 8}, {2, 8}};
    EXPECT_EQ(flat.getIndexX(2), 1);
    EXPECT_EQ(flat.getIndexY(8), 1);
}

TEST(CloudQueries, BallTakesWhatIsAtMostItsRadiusAway) {
    Nasty nasty(13);
    for (int round = 0; round < 400; ++round) {
        nasty.nextCase();
        KxPointCloud<KxPointXYZ> cloud;
        cloud.points = nasty.points<KxPointXYZ>(1 + nasty.size());
        const KxPointXYZ centre = nasty.chance(50) ? nasty.point<KxPointXYZ>() : cloud.points[0];
        KxPointXYZ another = cloud.points.last();
        // Often exactly as far as a point is, or the next float.
        const float distance = KxPointXYZ::calcDistance(another, centre);
        const float radius = nasty.pick(std::array{distance, std::nextafter(distance, 0.0f), nasty.value(), -0.0f,
                                                   1e-30f, 1e-45f, 1.9e19f, std::numeric_limits<float>::infinity()});
        QList<int> expected;
        for (qsizetype i = 0; i < cloud.points.size(); ++i) {
            if (KxPointXYZ::calcDistance(cloud.points[i], centre) <= (radius * 2) * 0.5f) {
                expected.append(static_cast<int>(i));
            }
        }
        QList<int> found{7};
        ASSERT_EQ(cloud.getRangeIndeces(found, centre, radius * 2), expected.size()) << radius;
        ASSERT_EQ(exact(found), exact(expected)) << radius;
    }
}

TEST(CloudQueries, BallIncludesItsSurface) {
    Space cloud;
    cloud.points = {{3, 0, 0}, {0, 0, 3.0000002f}, {kNaN, 0, 0}, {0, 0, 0}, {0, -3, 0}};
    QList<int> out{7, 8};
    EXPECT_EQ(cloud.getRangeIndeces(out, {0, 0, 0}, 6), 3);
    EXPECT_EQ(out, (QList<int>{0, 3, 4}));
    EXPECT_EQ(cloud.getRangeIndeces(out, {0, 0, 0}, 0), 1);
    EXPECT_EQ(cloud.getRangeIndeces(out, {0, 0, 0}, -6), 0);
    EXPECT_EQ(cloud.getRangeIndeces(out, {0, 0, 0}, kNaN), 0);
    EXPECT_EQ(cloud.getRangeIndeces(out, {kNaN, 0, 0}, 6), 0);
    EXPECT_EQ(cloud.getRangeIndeces(out, {0, 0, 0}, std::numeric_limits<float>::infinity()), 4);
}

// More points than are collected at a time, few or many of which are taken.
TEST(CloudQueries, PortionsOfManyPoints) {
    Nasty nasty(14);
    for (const int percent : {0, 1, 50, 99, 100}) {
        Space cloud;
        QList<int> expected;
        for (int i = 0; i < 20000; ++i) {
            const bool isInside = nasty.chance(percent);
            cloud.points.append({static_cast<float>(i), 0, isInside ? 1.0f : 9.0f});
            if (isInside) {
                expected.append(i);
            }
        }
        QList<int> found;
        ASSERT_EQ(cloud.getRangeIndeces(found, kNaN, kNaN, kNaN, kNaN, 0, 2), expected.size()) << percent;
        ASSERT_EQ(exact(found), exact(expected)) << percent;
        Space section;
        Space extracted;
        ASSERT_EQ(cloud.calcSection(section, 1, 1), expected.size()) << percent;
        cloud.extract(extracted, kNaN, kNaN, kNaN, kNaN, 0, 2, true);
        ASSERT_EQ(extracted.size(), expected.size()) << percent;
        ASSERT_EQ(cloud.size(), 20000 - expected.size()) << percent;
        for (qsizetype i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(section.points[i].x, static_cast<float>(expected[i]));
            ASSERT_EQ(extracted.points[expected.size() - 1 - i].x, static_cast<float>(expected[i]));
        }
    }
}

TEST(CloudRemoval, TrimExtractSectionAndLevel) {
    Nasty nasty(3);
    for (int round = 0; round < 400; ++round) {
        nasty.nextCase();
        Space cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size());
        if (nasty.chance(50)) {
            cloud.sort(static_cast<KxSortOrder>(nasty.below(3)), KxSortAscending);
        }
        cloud.calcRange();
        cloud.zIndexBuilt = nasty.below(2); // whatever it says, the result is that of a full scan
        const int flag = cloud.zIndexBuilt;
        const plain::Box box = nastyBox(nasty);
        const QList<KxPointXYZ> all = cloud.points;
        const ExactList range = exactRange(cloud);

        Space out;
        const bool remove = nasty.chance(50);
        out.points = nasty.points<KxPointXYZ>(nasty.below(3));
        out.minX = 5;
        const float oldMin = out.points.isEmpty() ? 5.0f : kNaN; // only a cloud with points is cleared
        QList<KxPointXYZ> rest = all;
        const QList<KxPointXYZ> inside = plain::removeBackwards(rest, [&](const auto& p) { return box.holds(p); });
        cloud.extract(out, box.minX, box.maxX, box.minY, box.maxY, box.minZ, box.maxZ, remove);
        ASSERT_EQ(exact(out.points), exact(inside));
        ASSERT_EQ(exact(out.minX), exact(oldMin));
        ASSERT_EQ(exact(cloud.points), exact(remove ? rest : all));
        ASSERT_EQ(cloud.zIndexBuilt, remove ? 0 : flag);
        ASSERT_EQ(exactRange(cloud), range);

        const float z = nasty.value();
        const float halfWidth = nasty.value();
        QList<KxPointXYZ> section;
        for (const KxPointXYZ& p : std::as_const(cloud.points)) {
            const float distance = std::abs(p.z - z);
            if (distance <= halfWidth) {
                section.append(p);
            }
        }
        out.maxZ = 5;
        ASSERT_EQ(cloud.calcSection(out, z, halfWidth), section.size());
        ASSERT_EQ(exact(out.points), exact(section));
        ASSERT_TRUE(std::isnan(out.maxZ));

        const bool above = nasty.chance(50);
        rest = cloud.points;
        const auto goes = [&](const KxPointXYZ& p) { return above ? p.y >= z : p.y <= z; };
        const int removed = static_cast<int>(plain::removeBackwards(rest, goes).size());
        ASSERT_EQ(cloud.removePointsByYLevel(z, above), removed);
        ASSERT_EQ(exact(cloud.points), exact(rest));
        ASSERT_EQ(exactRange(cloud), range);

        plain::removeBackwards(rest, [&](const auto& p) { return !box.holds(p); });
        const auto clamped = [](float old, float bound, bool isBeyond) {
            return exact(std::isnan(bound) ? kNaN : isBeyond ? bound : old);
        };
        const ExactList expected{
            clamped(cloud.minX, box.minX, cloud.minX < box.minX), clamped(cloud.maxX, box.maxX, cloud.maxX > box.maxX),
            clamped(cloud.minY, box.minY, cloud.minY < box.minY), clamped(cloud.maxY, box.maxY, cloud.maxY > box.maxY),
            clamped(cloud.minZ, box.minZ, cloud.minZ < box.minZ), clamped(cloud.maxZ, box.maxZ, cloud.maxZ > box.maxZ)};
        cloud.trim(box.minX, box.maxX, box.minY, box.maxY, box.minZ, box.maxZ);
        ASSERT_EQ(exact(cloud.points), exact(rest));
        ASSERT_EQ(exactRange(cloud), expected);
        ASSERT_EQ(cloud.zIndexBuilt, remove ? 0 : flag);
    }
}

TEST(CloudRemoval, ACloudAsItsOwnOutEndsEmpty) {
    for (const bool remove : {false, true}) {
        Space cloud;
        cloud.points = Nasty(4).points<KxPointXYZ>(20);
        cloud.calcRange();
        cloud.buildZIndex();
        cloud.extract(cloud, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, remove);
        EXPECT_EQ(cloud.size(), 0);
        EXPECT_TRUE(std::isnan(cloud.minX));
        EXPECT_EQ(cloud.zIndexBuilt, remove ? 0 : 1);
    }
    Space cloud;
    cloud.points = Nasty(4).points<KxPointXYZ>(20);
    EXPECT_EQ(cloud.calcSection(cloud, 0, 1e9f), 0);
    EXPECT_EQ(cloud.size(), 0);
}
