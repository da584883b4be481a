#include "profileSupport.h"

#include <QtCore/QRectF>

using namespace testing_support;

namespace {

/// The first of the smallest or largest values, at first that of the first point: NaN stays there, and is no other's.
int plainExtreme(const Points& points, float KxPointXY::*key, bool isSmallest) {
    int at = 0;
    for (int i = 1; i < points.size(); ++i) {
        const bool isBeyond = isSmallest ? points[i].*key < points[at].*key : points[i].*key > points[at].*key;
        at = isBeyond ? i : at;
    }
    return at;
}

TEST(Profile, RangeAndItsIndicesEqualThePlainDefinition) {
    forNasty(141, 1000, [](Nasty& nasty) {
        const Points points = nasty.points<KxPointXY>(1 + nasty.size(20));
        KxProfile profile = profileOf(points);
        float minX, minY, maxX, maxY;
        int at[4];
        ASSERT_TRUE(profile.calcRange(&minX, &minY, &maxX, &maxY, at));
        const QList<int> expected = {
            plainExtreme(points, &KxPointXY::x, true), plainExtreme(points, &KxPointXY::x, false),
            plainExtreme(points, &KxPointXY::y, true), plainExtreme(points, &KxPointXY::y, false)};
        EXPECT_EQ(QList<int>(at, at + 4), expected);
        const ExactList range = exact(points[at[0]].x, points[at[1]].x, points[at[2]].y, points[at[3]].y);
        EXPECT_EXACT(exact(minX, maxX, minY, maxY), range);
        expectPoints(profile, points); // the cached range is not touched
        ASSERT_TRUE(profile.calcRange());
        EXPECT_EXACT(exact(profile.minX, profile.maxX, profile.minY, profile.maxY), range);
    });
}

TEST(Profile, RangeOfNoPointsChangesNothing) {
    KxProfile empty = profileOf({});
    float bound = 7.0f;
    int indices[4] = {5, 6, 7, 8};
    QRectF rect(1.0, 2.0, 3.0, 4.0);
    EXPECT_FALSE(empty.calcRange() || empty.calcRange(&bound, &bound, &bound, &bound, indices));
    EXPECT_FALSE(empty.calcRange(rect, indices));
    EXPECT_TRUE(bound == 7.0f && indices[0] == 5 && rect == QRectF(1.0, 2.0, 3.0, 4.0));
    expectPoints(empty, {});
    EXPECT_TRUE(std::isnan(empty.calcCenterX()) && std::isnan(empty.calcCenterY()));
    KxProfile unknown;
    unknown.points = {{1, 2}, {5, 10}};
    EXPECT_TRUE(unknown.calcCenterX() == 3.0f && unknown.calcCenterY() == 6.0f && unknown.maxX == 5.0f);
}

// The rectangle of a range has its top left at the largest y: used for trimming, its y bounds are swapped.
TEST(Profile, TrimKeepsPointsOnABoundAndThoseWithoutACoordinate) {
    forNasty(142, 1000, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 20);
        const auto bound = [&] { return nasty.chance(30) ? kNaN : nasty.value(); };
        const float a = bound(), b = bound(), c = bound(), d = bound();
        const auto expectTrimmed = [&](auto trim, float minX, float minY, float maxX, float maxY) {
            KxProfile profile = profileOf(points);
            Points kept = points;
            const auto removed =
                kept.removeIf([=](const KxPointXY& p) { return p.x < minX || p.x > maxX || p.y < minY || p.y > maxY; });
            EXPECT_EQ(trim(profile), removed);
            expectPoints(profile, kept);
        };
        expectTrimmed([=](KxProfile& p) { return p.trim(a, b, c, d); }, a, b, c, d);
        expectTrimmed([=](KxProfile& p) { return p.trimX(a, b); }, a, kNaN, b, kNaN);
        expectTrimmed([=](KxProfile& p) { return p.trimY(a, b); }, kNaN, a, kNaN, b);
        expectTrimmed([=](KxProfile& p) { return p.trimLower(a); }, kNaN, a, kNaN, kNaN);
        expectTrimmed([=](KxProfile& p) { return p.trimUpper(a); }, kNaN, kNaN, kNaN, a);
        expectTrimmed([](KxProfile& p) { return p.trim(QRectF(0, 1, 9, -2)); }, 0, 1, 9, -1);
    });
    QRectF rect(40.0, 50.0, 60.0, 70.0);
    ASSERT_TRUE(profileOf({{1, 3}, {3, 2}, {2, 5}}).calcRange(rect, nullptr));
    EXPECT_EQ(rect, QRectF(1.0, 5.0, 2.0, -3.0));
}

TEST(Profile, BuffersAreAppendedAndCopiesAreDeep) {
    float buffer[] = {1.0f, 2.0f, kNaN, -0.0f};
    KxProfile profile(buffer, 2);
    profile.copyFromXYPointsBuffer(buffer, 1);
    profile.copyFromXYPointsBuffer(nullptr, 0);
    const Points points = {{1, 2}, {kNaN, -0.0f}, {1, 2}};
    EXPECT_TRUE(std::isnan(profile.minX));
    setRange(profile, 100.0f);
    KxProfile copy(profile), assigned = heights({9});
    EXPECT_EQ(&(assigned = profile), &assigned);
    profile.points[0].x = 7.0f;
    expectPoints(copy, points);
    expectPoints(assigned, points);
}

} // namespace
