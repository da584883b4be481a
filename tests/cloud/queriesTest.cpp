// Finding and removing points, against the plain definitions.
#include "support/testing.h"

using namespace testing_support;

namespace {

using Space = KxPointCloud<KxPointXYZ>;

/// Bounds from minX to maxZ; NaN means no bound.
struct Box {
    std::array<float, 6> b;

    explicit Box(Nasty& nasty) {
        std::generate(b.begin(), b.end(), [&] { return nasty.chance(50) ? kNaN : nasty.value(); });
    }
    bool passes(float v, std::size_t i) const {
        return (std::isnan(b[i]) || b[i] <= v) && (std::isnan(b[i + 1]) || v <= b[i + 1]);
    }
    bool holds(const KxPointXY& p) const { return passes(p.x, 0) && passes(p.y, 2); }
    template <typename Point>
    bool holds(const Point& p) const {
        return passes(p.x, 0) && passes(p.y, 2) && passes(p.z, 4);
    }
};

/// Positions of the points for which `takes` returns true.
template <typename Point, typename Takes>
QList<int> positionsOf(const QList<Point>& points, Takes takes) {
    QList<int> positions;
    for (int i = 0; i < points.size(); ++i) {
        if (takes(points[i])) {
            positions.append(i);
        }
    }
    return positions;
}

template <typename Point>
int removePositions(QList<Point>& points, QList<int>& positions) {
    std::sort(positions.begin(), positions.end());
    int counted = 0;
    for (qsizetype i = positions.size() - 1; i >= 0; --i) {
        counted += positions[i] < points.size() ? 1 : 0;
        if (positions[i] >= 0 && positions[i] < points.size()) {
            points.removeAt(positions[i]);
        }
    }
    return counted;
}

/// Removes the points for which `goes` returns true, from the last to the first; returns them in that order.
template <typename Goes>
SpacePoints removeBackwards(SpacePoints& points, Goes goes) {
    SpacePoints gone;
    for (qsizetype i = points.size() - 1; i >= 0; --i) {
        if (goes(points[i])) {
            gone.append(points.takeAt(i));
        }
    }
    return gone;
}

template <typename Point>
class CloudQueriesOf : public testing::Test {};
TYPED_TEST_SUITE(CloudQueriesOf, PointTypes);

TYPED_TEST(CloudQueriesOf, BoxQueryAndRemovalByPosition) {
    forNasty(1, 400, [](Nasty& nasty) {
        KxPointCloud<TypeParam> cloud;
        cloud.points = nasty.points<TypeParam>(nasty.size());
        const QList<TypeParam> shared = cloud.points;
        const ExactList before = exact(shared);
        const Box box(nasty);
        const QList<int> expected = positionsOf(shared, [&](const TypeParam& p) { return box.holds(p); });
        const auto& b = box.b;
        QList<int> found{-5};
        int count = -1;
        if constexpr (std::is_same_v<TypeParam, KxPointXY>) {
            count = cloud.getRangeIndeces(found, b[0], b[1], b[2], b[3]);
        } else {
            count = cloud.getRangeIndeces(found, b[0], b[1], b[2], b[3], b[4], b[5]);
        }
        ASSERT_EXACT(found, expected);
        ASSERT_EQ(count, expected.size());

        // Positions in any order, repeated, negative and beyond the cloud.
        for (int i = 0, extra = nasty.size(60); i < extra; ++i) {
            const int range = nasty.pick(std::array{4, cloud.size() + 5});
            found.insert(nasty.below(static_cast<int>(found.size()) + 1), nasty.below(range) - nasty.below(3));
        }
        if (nasty.chance(20)) {
            found += {INT_MIN, INT_MAX};
        }
        QList<int> positions = found;
        QList<TypeParam> rest = shared;
        ASSERT_EQ(cloud.removeIndeces(positions), removePositions(rest, found));
        ASSERT_EXACT(positions, found) << "the caller's list is sorted";
        ASSERT_EXACT(cloud.points, rest);
        ASSERT_EXACT(shared, before) << "a list that was shared keeps its points";
    });
}

TEST(CloudQueries, FirstPointWithACoordinate) {
    Space cloud;
    EXPECT_EQ(cloud.getIndexX(0), -1);
    cloud.points = {{1, kNaN, 5}, {2, -0.0f, 5}, {2, 0, kNaN}};
    EXPECT_EQ(QList<int>({cloud.getIndexX(2), cloud.getIndexX(2.5f), cloud.getIndexY(0), cloud.getIndexY(kNaN)}),
              QList<int>({1, -1, 1, -1}));
    for (cloud.zIndexBuilt = 0; cloud.zIndexBuilt < 2; ++cloud.zIndexBuilt) {
        EXPECT_EQ(cloud.getIndexZ(5), 0) << "without the index";
    }
    KxPointCloud<KxPointXY> flat;
    flat.points = {{1, 7}, {2, 8}, {2, 8}};
    EXPECT_TRUE(flat.getIndexX(2) == 1 && flat.getIndexY(8) == 1);
}

TEST(CloudQueries, BallTakesWhatIsAtMostItsRadiusAway) {
    forNasty(13, 400, [](Nasty& nasty) {
        Space cloud;
        cloud.points = nasty.points<KxPointXYZ>(1 + nasty.size());
        const KxPointXYZ centre = nasty.chance(50) ? nasty.point<KxPointXYZ>() : cloud.points[0];
        // Often exactly as far as a point is, or the next float.
        const float distance = KxPointXYZ::calcDistance(cloud.points.last(), centre);
        const float radius = nasty.pick(
            std::array{distance, std::nextafter(distance, 0.0f), nasty.value(), -0.0f, 1e-30f, 1e-45f, 1.9e19f, kInf});
        const QList<int> expected = positionsOf(cloud.points, [&](const KxPointXYZ& p) {
            return KxPointXYZ::calcDistance(p, centre) <= (radius * 2) * 0.5f;
        });
        QList<int> found{7};
        ASSERT_EQ(cloud.getRangeIndeces(found, centre, radius * 2), expected.size()) << radius;
        ASSERT_EXACT(found, expected) << radius;
    });
}

// More points than one block, few or many of which are selected.
TEST(CloudQueries, PortionsOfManyPoints) {
    Nasty nasty(14);
    for (const int percent : {0, 1, 50, 99, 100}) {
        Space cloud;
        cloud.points = pointsFor(20000, [&](int i) { return at(i, 0, nasty.chance(percent) ? 1 : 9); });
        const QList<int> expected = positionsOf(cloud.points, [](const KxPointXYZ& p) { return p.z == 1.0f; });
        QList<int> found;
        ASSERT_EQ(cloud.getRangeIndeces(found, kNaN, kNaN, kNaN, kNaN, 0, 2), expected.size()) << percent;
        ASSERT_EXACT(found, expected) << percent;
        Space section, extracted;
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
    forNasty(3, 400, [](Nasty& nasty) {
        Space cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size());
        if (nasty.chance(50)) {
            cloud.sort(static_cast<KxSortOrder>(nasty.below(3)), KxSortAscending);
        }
        cloud.calcRange();
        const int flag = cloud.zIndexBuilt = nasty.below(2); // whatever it says, the result is that of a full scan
        const Box box(nasty);
        const auto& b = box.b;
        const SpacePoints all = cloud.points;
        ExactList range = exactRange(cloud);

        Space out;
        const bool remove = nasty.chance(50);
        out.points = nasty.points<KxPointXYZ>(nasty.below(3));
        out.minX = 5;
        const float oldMin = out.points.isEmpty() ? 5.0f : kNaN; // only a cloud with points is cleared
        SpacePoints rest = all;
        const SpacePoints inside = removeBackwards(rest, [&](const KxPointXYZ& p) { return box.holds(p); });
        cloud.extract(out, b[0], b[1], b[2], b[3], b[4], b[5], remove);
        ASSERT_EXACT(out.points, inside);
        ASSERT_EXACT(out.minX, oldMin);
        ASSERT_EXACT(cloud.points, remove ? rest : all);
        ASSERT_EQ(cloud.zIndexBuilt, remove ? 0 : flag);
        ASSERT_EXACT(exactRange(cloud), range);

        const float z = nasty.value(), halfWidth = nasty.value();
        SpacePoints section = rest = cloud.points;
        section.removeIf([&](const KxPointXYZ& p) { return !(std::abs(p.z - z) <= halfWidth); });
        out.maxZ = 5;
        ASSERT_EQ(cloud.calcSection(out, z, halfWidth), section.size());
        ASSERT_EXACT(out.points, section);
        ASSERT_TRUE(std::isnan(out.maxZ));

        const bool above = nasty.chance(50);
        const auto removed = rest.removeIf([&](const KxPointXYZ& p) { return above ? p.y >= z : p.y <= z; });
        ASSERT_EQ(cloud.removePointsByYLevel(z, above), removed);
        ASSERT_EXACT(cloud.points, rest);
        ASSERT_EXACT(exactRange(cloud), range);

        rest.removeIf([&](const KxPointXYZ& p) { return !box.holds(p); });
        for (std::size_t i = 0; i < 6; ++i) { // an unknown bound makes the range unknown, another clamps it
            const double bound = static_cast<double>(b[i]);
            const bool isBeyond = i % 2 == 0 ? range[i].value < bound : range[i].value > bound;
            range[i] = std::isnan(b[i]) ? exact(kNaN) : isBeyond ? exact(b[i]) : range[i];
        }
        cloud.trim(b[0], b[1], b[2], b[3], b[4], b[5]);
        ASSERT_EXACT(cloud.points, rest);
        ASSERT_EXACT(exactRange(cloud), range);
        ASSERT_EQ(cloud.zIndexBuilt, remove ? 0 : flag);
    });
}

TEST(CloudRemoval, ACloudAsItsOwnOutEndsEmpty) {
    for (const bool remove : {false, true}) {
        Space cloud;
        cloud.points = Nasty(4).points<KxPointXYZ>(20);
        Space same(cloud);
        cloud.calcRange();
        cloud.buildZIndex();
        cloud.extract(cloud, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, remove);
        EXPECT_TRUE(cloud.isEmpty() && std::isnan(cloud.minX));
        EXPECT_EQ(cloud.zIndexBuilt, remove ? 0 : 1);
        EXPECT_EQ(same.calcSection(same, 0, 1e9f), 0);
        EXPECT_TRUE(same.isEmpty());
    }
}

} // namespace
