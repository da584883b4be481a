#include "support/testing.h"

using namespace testing_support;

namespace {

struct Fields {
    ExactList operator()(const KxLine& l) const { return exact(l.k, l.b); }
    ExactList operator()(const KxCircle& c) const { return exact(c.x, c.y, c.radius); }
    ExactList operator()(const KxFreeVector& v) const { return exact(v.x, v.y); }
    ExactList operator()(const KxPlane& p) const { return exact(p.a, p.b, p.c, p.d); }
};
constexpr Fields fields;

TEST(Primitives, DefaultIsUnknownAndAssignmentReturnsTheTarget) {
    EXPECT_EXACT(exact(KxLine().k, KxLine().b), ExactList(2, exact(kNaN)));
    EXPECT_EXACT(fields(KxCircle()), ExactList(3, exact(kNaN)));
    EXPECT_EXACT(fields(KxPlane()), ExactList(4, exact(kNaN)));
    EXPECT_EXACT(fields(KxFreeVector()), ExactList(2, exact(kNaN)));
    KxLine line;
    EXPECT_TRUE(&(line = KxLine(1, 2)) == &line && line.k == 1 && line.b == 2);
}

TEST(Line, ThroughTwoPoints) {
    const std::tuple<const char*, KxPointXY, KxPointXY, bool, KxLine> cases[] = {
        {"rising", {0, 0}, {2, 2}, true, {1, -0.0f}},
        {"upright", {1, 2}, {1.000001f, 5}, false, {9, 9}},
        {"the limit itself is wide enough", {0, 1}, {1e-5f, 1}, true, {-0.0f, 1}},
        {"just below the limit", {0, 1}, {std::nextafter(1e-5f, 0.0f), 1}, false, {9, 9}},
        {"NaN is not narrow", {kNaN, 1}, {1, 1}, true, {kNaN, kNaN}},
    };
    for (const auto& [desc, a, b, isDone, expected] : cases) {
        KxPointXY p1(a), p2(b);
        KxLine line(9, 9);
        EXPECT_EQ(line.calcFromTwoPoints(p1, p2), isDone) << desc;
        EXPECT_EXACT(fields(isDone ? line : expected), fields(expected)) << desc;
    }
}

TEST(Line, LeastSquares) {
    const std::tuple<const char*, Points, bool, KxLine> cases[] = {
        {"empty", {}, false, {9, 9}},
        {"one point", {{1, 1}}, false, {9, 9}},
        {"every x is 0", {{0, 1}, {-0.0f, 2}, {0, 3}}, false, {9, 9}},
        {"first off the axis twice", {{0, 0}, {-1, 1}, {1, 3}}, true, {4 * (16 / 11.0f) - 5, 16 / 11.0f}},
        {"single-precision sums", {{1, 16777216}, {1, 1}, {2, 1}}, true, {-8388605, 16777212}},
        {"NaN", {{1, 1}, {kNaN, 3}}, true, {kNaN, kNaN}},
    };
    KxPointCloud<KxPointXY> cloud;
    for (const auto& [desc, points, isDone, expected] : cases) {
        KxLine line(9, 9);
        cloud.points = points;
        EXPECT_EQ(line.calcFromPointCloud(cloud), isDone) << desc;
        EXPECT_EXACT(fields(line), fields(expected)) << desc;
    }
    KxLine upright(9, 9);
    cloud.points = {{2, 1}, {2, 3}};
    EXPECT_TRUE(upright.calcFromPointCloud(cloud)) << "one x other than 0 is not guarded";
    EXPECT_FALSE(std::isfinite(upright.b));
}

TEST(Line, ValuesIntersectionsAnglesDistances) {
    KxLine rising(2, 1), falling(-1, 4), parallel(2, 5), unknown;
    EXPECT_EXACT(exact(rising.y(3), rising.x(7), KxLine(0, 1).x(2), KxLine(0, 1).x(1)), exact(7, 3, kInf, kNaN));
    KxPointXY out(9, 9);
    EXPECT_TRUE(!rising.calcIntersection(parallel, out) && out.x == 9.0f);
    EXPECT_TRUE(rising.calcIntersection(falling, out));
    EXPECT_EXACT(out, KxPointXY(1, 3));
    EXPECT_TRUE(KxLine::calcIntersection(unknown, unknown, out) && out.isNull()) << "NaN slopes are not equal";

    KxLine level(0, 3), diagonal(1, 0), steep(-kInf, 0), pythagorean(0.75f, 0);
    EXPECT_EQ(rising.calcAngle(parallel), 0.0f);
    EXPECT_FLOAT_EQ(diagonal.calcAngle(level), 45.0f);
    EXPECT_FLOAT_EQ(KxLine::calcAngle(level, diagonal), -45.0f);
    EXPECT_FLOAT_EQ(level.calcAngle(steep), 90.0f);

    KxPointXY below(5, -1), above(0, 5);
    EXPECT_TRUE(level.calcDistanceToPoint(below) == 4 && KxLine::calcDistanceToPoint(pythagorean, above) == 4);
    EXPECT_TRUE(std::isnan(unknown.calcDistanceToPoint(above)));
}

TEST(Circle, AlgebraicFit) {
    const std::tuple<const char*, Points, bool, KxCircle> cases[] = {
        {"empty", {}, false, {9, 9, 9}},
        {"one point", {{3, 4}}, false, {9, 9, 9}},
        {"on a line", {{0, 0}, {1, 1}, {2, 2}}, false, {9, 9, 9}},
        {"on a circle", {{8, 4}, {3, 9}, {-2, 4}, {3, -1}}, true, {3, 4, 5}},
        {"root mean square distance", {{0, 0}, {2, 0}, {0, 2}, {2, 2}, {1, 1}}, true, {1, 1, std::sqrt(1.6f)}},
        {"NaN", {{8, 4}, {3, 9}, {kNaN, 4}, {3, -1}}, true, {kNaN, kNaN, kNaN}},
    };
    KxPointCloud<KxPointXY> cloud;
    KxCircle circle;
    for (const auto& [desc, points, isDone, expected] : cases) {
        circle = KxCircle(9, 9, 9);
        cloud.points = points;
        EXPECT_EQ(circle.calcFromPointCloud(cloud), isDone) << desc;
        EXPECT_EXACT(fields(circle), fields(expected)) << desc;
    }
    cloud.points = pointsFor(200, [](int i) { return at(3 + 5 * std::cos(0.01 * i), 4 + 5 * std::sin(0.01 * i)); });
    ASSERT_TRUE(circle.calcFromPointCloud(cloud));
    EXPECT_LT(std::hypot(circle.x - 3, circle.y - 4, circle.radius - 5), 3e-3f);
}

TEST(Plane, ThroughThreePointsInDouble) {
    KxPointXYZ p1(1, 0, 0), p2(0, 2, 0), p3(0, 0, 4), origin(0, 0, 0);
    KxPlane p, level, unknown;
    p.calcFromPoints(p1, p2, p3);
    EXPECT_EXACT(fields(p), exact(QList<float>{8, 4, 2, -8}));
    // The products exceed single precision: (2^12 + 1)^2 - 2^24 is 2^13 in floats.
    KxPointXYZ q1(4097, 4096, 0), q2(4096, 4097, 0), q3(0, 0, 1);
    p.calcFromPoints(q1, q2, q3);
    EXPECT_EXACT(fields(p), exact(QList<float>{1, 1, 8193, -8193}));
    p.calcFromPoints(p1, p1, p2);
    EXPECT_EQ(p.a + p.b + p.c + p.d, 0.0f) << "points on one line";
    EXPECT_TRUE(std::isnan(p.calcDistance(p1))) << "no normal";
    level.calcFromPoints(p1, p3, p2);
    EXPECT_FLOAT_EQ(level.calcDistance(origin), 8.0f / std::sqrt(84.0f)) << "without a sign";
    EXPECT_TRUE(std::isnan(KxPlane::calcDistance(unknown, origin)));
}

TEST(FreeVector, LengthSumAngle) {
    KxFreeVector v(3, 4);
    EXPECT_EQ(v.size(), 5.0f);
    for (const float len : {0.0f, -0.0f, -1.0f, -kInf}) {
        EXPECT_FALSE(v.resize(len));
        EXPECT_EXACT(fields(v), fields(KxFreeVector(3, 4)));
    }
    EXPECT_TRUE(v.resize(10));
    EXPECT_EXACT(fields(v), fields(KxFreeVector(6, 8)));
    EXPECT_TRUE(v.resize(kNaN));
    EXPECT_EXACT(fields(v), fields(KxFreeVector()));

    KxFreeVector right(3, 0), up(0, 4), left(-3, 0), down(0, -1), zero(0, 0);
    EXPECT_TRUE(v.sumVectors(right, up));
    EXPECT_FALSE(v.sumVectors(right, left));
    EXPECT_EXACT(fields(v), fields(KxFreeVector(0.6f, 0.8f)));
    EXPECT_TRUE(up.sumVectors(up, up)) << "the receiver as both arguments";
    EXPECT_EXACT(fields(up), fields(KxFreeVector(0, 1)));
    EXPECT_FLOAT_EQ(right.calcAngleBetweenVectors(down), 90.0f);
    EXPECT_FLOAT_EQ(KxFreeVector::calcAngleBetweenVectors(right, left), 180.0f);
    EXPECT_EQ(right.calcAngleBetweenVectors(right), 0.0f);
    EXPECT_TRUE(std::isnan(right.calcAngleBetweenVectors(zero)));
}

TEST(FreeVector, DirectionOfAProfile) {
    const std::tuple<const char*, int, int, float, bool, KxFreeVector> cases[] = {
        {"base is start + dir", 0, 1, 1, true, {0, 1}},
        {"a distance of len is far enough", 0, 1, 3, true, {0, 1}},
        {"to the end when nothing is far enough", 1, 1, 1000, true, {0.8f, -0.6f}},
        {"NaN len walks to the end", 1, 1, kNaN, true, {0.8f, -0.6f}},
        {"backwards", 3, -1, 1, true, {0, -1}},
        {"start before the cloud", -1, 1, 1, true, {1, 0}},
        {"start behind the cloud", 5, -1, 1, true, {-4 / std::sqrt(65.0f), 7 / std::sqrt(65.0f)}},
        {"no step from the last point", 3, 1, 1, false, {9, 9}},
        {"no step from the first point", 1, -1, 1, false, {9, 9}},
        {"len 0", 0, 1, 0, false, {9, 9}},
        {"dir 2", 0, 2, 1, false, {9, 9}},
        {"largest start", INT_MAX, 1, 1, false, {9, 9}},
        {"smallest start", INT_MIN, -1, 1, false, {9, 9}},
    };
    KxPointCloud<KxPointXY> cloud;
    cloud.points = {{0, 0}, {1, 0}, {1, 3}, {1, 7}, {5, 0}};
    for (const auto& [desc, start, dir, len, isDone, expected] : cases) {
        KxFreeVector v(9, 9);
        EXPECT_EQ(v.calcFromPointCloud(cloud, start, dir, len), isDone) << desc;
        EXPECT_EXACT(fields(v), fields(expected)) << desc;
    }
}

} // namespace
