#include "profileSupport.h"

#include <QtCore/QRectF>

using namespace KxMath;
using namespace testing_support;

namespace {

TEST(Profile, RangeStartsWithTheFirstPointAndKeepsTheFirstOfEqualValues) {
    const struct {
        const char* desc;
        Points points;
        QList<float> range; // smallest x, largest x, smallest y, largest y
        QList<int> indices;
    } cases[] = {
        {"one point", {{2, -3}}, {2, 2, -3, -3}, {0, 0, 0, 0}},
        {"equal values", {{2, 5}, {1, 5}, {1, 7}, {2, 7}}, {1, 2, 5, 7}, {1, 0, 0, 2}},
        {"zeros are equal", {{-0.0f, 0}, {0, -0.0f}}, {-0.0f, -0.0f, 0, 0}, {0, 0, 0, 0}},
        {"NaN behind the first point", {{1, 1}, {kNaN, 2}, {0, kNaN}}, {0, 1, 1, 2}, {2, 0, 0, 1}},
        {"NaN in the first point", {{kNaN, 1}, {1, 2}, {0, 3}}, {kNaN, kNaN, 1, 3}, {0, 0, 0, 2}},
        {"infinities", {{1, 1}, {kInf, -kInf}}, {1, kInf, -kInf, 1}, {0, 1, 1, 0}},
    };
    for (const auto& c : cases) {
        KxProfile profile = profileOf(c.points);
        float minX, minY, maxX, maxY;
        int at[4];
        ASSERT_TRUE(profile.calcRange(&minX, &minY, &maxX, &maxY, at));
        EXPECT_EQ(exact(QList<float>{minX, maxX, minY, maxY}), exact(c.range)) << c.desc;
        EXPECT_EQ(QList<int>(at, at + 4), c.indices) << c.desc;
        expectPoints(profile, c.points); // the cached range is not touched
        ASSERT_TRUE(profile.calcRange());
        EXPECT_EQ(exact(QList<float>{profile.minX, profile.maxX, profile.minY, profile.maxY}), exact(c.range));
    }
}

TEST(Profile, RangeOfNoPointsTouchesNothing) {
    KxProfile empty = profileOf({});
    float bound = 7.0f;
    int indices[4] = {5, 6, 7, 8};
    QRectF rect(1.0, 2.0, 3.0, 4.0);
    EXPECT_FALSE(empty.calcRange() || empty.calcRange(&bound, &bound, &bound, &bound, indices));
    EXPECT_FALSE(empty.calcRange(rect, indices));
    EXPECT_TRUE(bound == 7.0f && indices[0] == 5 && rect == QRectF(1.0, 2.0, 3.0, 4.0));
    EXPECT_EQ(empty.trim(0.0f, 0.0f, 0.0f, 0.0f), 0);
    expectPoints(empty, {});
    EXPECT_TRUE(std::isnan(empty.calcCenterX()) && std::isnan(empty.calcCenterY()));
    KxProfile unknown;
    unknown.points = {{1, 2}, {5, 10}};
    EXPECT_TRUE(unknown.calcCenterX() == 3.0f && unknown.calcCenterY() == 6.0f && unknown.maxX == 5.0f);
}

TEST(Profile, RangeRectangleHasItsTopLeftAtTheLargestY) {
    KxProfile profile = profileOf({{1, 3}, {3, 2}, {2, 5}});
    QRectF rect(40.0, 50.0, 60.0, 70.0);
    ASSERT_TRUE(profile.calcRange(rect, nullptr));
    EXPECT_EQ(rect, QRectF(1.0, 5.0, 2.0, -3.0));
    EXPECT_EQ(profile.trim(rect), 3); // its y bounds are swapped
}

TEST(Profile, TrimKeepsPointsOnABoundAndThoseWithoutACoordinate) {
    const Points points = {{0, 0}, {1, 1}, {2, 2}, {3, 1}, {kNaN, 1}, {1, kNaN}, {kNaN, kNaN}, {kInf, -kInf}};
    const struct {
        const char* desc;
        int (*trim)(KxProfile&);
        QList<int> kept;
    } cases[] = {
        {"no bound", [](KxProfile& p) { return p.trim(kNaN, kNaN, kNaN, kNaN); }, {0, 1, 2, 3, 4, 5, 6, 7}},
        {"all bounds", [](KxProfile& p) { return p.trim(1, 1, 2, 2); }, {1, 2, 4, 5, 6}},
        {"x only", [](KxProfile& p) { return p.trimX(0, 2); }, {0, 1, 2, 4, 5, 6}},
        {"smallest x only", [](KxProfile& p) { return p.trimX(2, kNaN); }, {2, 3, 4, 6, 7}},
        {"y only", [](KxProfile& p) { return p.trimY(1, 1); }, {1, 3, 4, 5, 6}},
        {"from below", [](KxProfile& p) { return p.trimLower(1); }, {1, 2, 3, 4, 5, 6}},
        {"from above", [](KxProfile& p) { return p.trimUpper(1); }, {0, 1, 3, 4, 5, 6, 7}},
        {"bounds swapped", [](KxProfile& p) { return p.trim(2, 1, 1, 1); }, {4, 6}},
        {"rectangle", [](KxProfile& p) { return p.trim(QRectF(1, 0, 1, 1)); }, {1, 4, 5, 6}},
        {"rectangle with a negative height", [](KxProfile& p) { return p.trim(QRectF(0, 1, 9, -1)); }, {5, 6}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxProfile profile = profileOf(points);
        Points kept;
        std::for_each(c.kept.begin(), c.kept.end(), [&](int i) { kept.append(points[i]); });
        EXPECT_EQ(c.trim(profile), points.size() - kept.size());
        expectPoints(profile, kept);
    }
}

TEST(Profile, BuffersAreAppendedAndCopiesAreDeep) {
    float buffer[] = {1.0f, 2.0f, kNaN, -0.0f};
    KxProfile profile(buffer, 2);
    profile.copyFromXYPointsBuffer(buffer, 1);
    profile.copyFromXYPointsBuffer(nullptr, 0);
    const Points points = {{1, 2}, {kNaN, -0.0f}, {1, 2}};
    EXPECT_TRUE(std::isnan(profile.minX));
    setRange(profile, 100.0f);
    KxProfile copy(profile);
    KxProfile assigned = heights({9});
    EXPECT_EQ(&(assigned = profile), &assigned);
    profile.points[0].x = 7.0f;
    expectPoints(copy, points);
    expectPoints(assigned, points);
}

} // namespace
