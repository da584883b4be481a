// Lines, circles, planes and free vectors.
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxPrimitives.h>

#include <gtest/gtest.h>

#include <limits>

using namespace KxMath;
using namespace testing_support;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

using Cloud = KxPointCloud<KxPointXY>;

Cloud cloudOf(const QList<KxPointXY>& points) {
    Cloud cloud;
    cloud.points = points;
    return cloud;
}

ExactList exact(const KxLine& l) {
    return {testing_support::exact(l.k), testing_support::exact(l.b)};
}

ExactList exact(const KxCircle& c) {
    return {testing_support::exact(c.x), testing_support::exact(c.y), testing_support::exact(c.radius)};
}

ExactList exact(const KxFreeVector& v) {
    return {testing_support::exact(v.x), testing_support::exact(v.y)};
}

KxPlane plane(float a, float b, float c, float d) {
    KxPlane p;
    p.a = a;
    p.b = b;
    p.c = c;
    p.d = d;
    return p;
}

ExactList exact(const KxPlane& p) {
    return {testing_support::exact(p.a), testing_support::exact(p.b), testing_support::exact(p.c),
            testing_support::exact(p.d)};
}

} // namespace

TEST(Primitives, DefaultIsUnknownAndAssignmentReturnsTheTarget) {
    EXPECT_EQ(exact(KxLine()), exact(KxLine(kNaN, kNaN)));
    EXPECT_EQ(exact(KxCircle()), exact(KxCircle(kNaN, kNaN, kNaN)));
    EXPECT_EQ(exact(KxPlane()), exact(plane(kNaN, kNaN, kNaN, kNaN)));
    EXPECT_EQ(exact(KxFreeVector()), exact(KxFreeVector(kNaN, kNaN)));
    KxLine line;
    EXPECT_EQ(&(line = KxLine(1, 2)), &line);
    EXPECT_EQ(exact(line), exact(KxLine(1, 2)));
}

TEST(Line, ThroughTwoPoints) {
    struct Case {
        const char* desc;
        KxPointXY p1, p2;
        bool isDone;
        KxLine line;
    };
    for (Case c : {
             Case{"rising", {0, 0}, {2, 2}, true, {1, -0.0f}},
             Case{"order does not matter", {3, 7}, {1, 3}, true, {2, 1}},
             Case{"upright", {1, 2}, {1.000001f, 5}, false, {0, 0}},
             Case{"one point", {1, 2}, {1, 2}, false, {0, 0}},
             Case{"the limit itself is wide enough", {0, 1}, {1e-5f, 1}, true, {-0.0f, 1}},
             Case{"just below the limit", {0, 1}, {std::nextafter(1e-5f, 0.0f), 1}, false, {0, 0}},
             Case{"NaN is not narrow", {kNaN, 1}, {1, 1}, true, {kNaN, kNaN}},
         }) {
        KxLine line(9, 9);
        EXPECT_EQ(line.calcFromTwoPoints(c.p1, c.p2), c.isDone) << c.desc;
        EXPECT_EQ(exact(line), exact(c.line)) << c.desc;
    }
}

TEST(Line, LeastSquares) {
    struct Case {
        const char* desc;
        QList<KxPointXY> points;
        bool isDone;
        KxLine line;
    };
    for (const Case& c : {
             Case{"empty", {}, false, {9, 9}},
             Case{"one point", {{1, 1}}, false, {9, 9}},
             Case{"every x is 0", {{0, 1}, {-0.0f, 2}, {0, 3}}, false, {9, 9}},
             Case{"two points", {{1, 1}, {3, 5}}, true, {2, -1}},
             Case{"first point off the axis counts twice, no effect on a line", {{-1, 1}, {1, 3}}, true, {1, 2}},
             Case{"first point off the axis counts twice",
                  {{0, 0}, {-1, 1}, {1, 3}},
                  true,
                  {(5.0f - 4.0f * (16.0f / 11.0f)) / -1.0f, 16.0f / 11.0f}},
             Case{"single-precision sums", {{1, 16777216}, {1, 1}, {2, 1}}, true, {-8388605, 16777212}},
             Case{"NaN", {{1, 1}, {kNaN, 3}}, true, {kNaN, kNaN}},
         }) {
        KxLine line(9, 9);
        Cloud cloud = cloudOf(c.points);
        EXPECT_EQ(line.calcFromPointCloud(cloud), c.isDone) << c.desc;
        EXPECT_EQ(exact(line), exact(c.line)) << c.desc;
    }
    KxLine upright(9, 9);
    Cloud cloud = cloudOf({{2, 1}, {2, 3}});
    EXPECT_TRUE(upright.calcFromPointCloud(cloud)) << "one x other than 0 is not guarded";
    EXPECT_FALSE(std::isfinite(upright.b));
}

TEST(Line, ValuesIntersectionsAnglesDistances) {
    KxLine rising(2, 1);
    EXPECT_EQ(rising.y(3), 7.0f);
    EXPECT_EQ(rising.x(7), 3.0f);
    EXPECT_EQ(KxLine(0, 1).x(2), kInfinity);
    EXPECT_TRUE(std::isnan(KxLine(0, 1).x(1)));

    KxLine falling(-1, 4);
    KxLine parallel(2, 5);
    KxPointXY out(9, 9);
    EXPECT_FALSE(rising.calcIntersection(parallel, out));
    EXPECT_EQ(exact(out.x), exact(9.0f));
    EXPECT_EQ(rising.calcAngle(parallel), 0.0f);
    EXPECT_TRUE(rising.calcIntersection(falling, out));
    EXPECT_EQ(testing_support::exact(out), testing_support::exact(KxPointXY(1, 3)));
    KxLine unknown;
    EXPECT_TRUE(KxLine::calcIntersection(unknown, unknown, out)) << "NaN slopes are not equal";
    EXPECT_TRUE(out.isNull());

    KxLine level(0, 3);
    KxLine diagonal(1, 0);
    KxLine steep(-kInfinity, 0);
    EXPECT_FLOAT_EQ(diagonal.calcAngle(level), 45.0f);
    EXPECT_FLOAT_EQ(KxLine::calcAngle(level, diagonal), -45.0f);
    EXPECT_FLOAT_EQ(level.calcAngle(steep), 90.0f);

    KxPointXY below(5, -1);
    EXPECT_EQ(level.calcDistanceToPoint(below), 4.0f);
    KxLine pythagorean(0.75f, 0);
    KxPointXY above(0, 5);
    EXPECT_EQ(KxLine::calcDistanceToPoint(pythagorean, above), 4.0f);
    EXPECT_TRUE(std::isnan(unknown.calcDistanceToPoint(above)));
}

TEST(Circle, AlgebraicFit) {
    struct Case {
        const char* desc;
        QList<KxPointXY> points;
        bool isDone;
        KxCircle circle;
    };
    for (const Case& c : {
             Case{"empty", {}, false, {9, 9, 9}},
             Case{"one point", {{3, 4}}, false, {9, 9, 9}},
             Case{"on a line", {{0, 0}, {1, 1}, {2, 2}}, false, {9, 9, 9}},
             Case{"on a circle", {{8, 4}, {3, 9}, {-2, 4}, {3, -1}}, true, {3, 4, 5}},
             Case{"the radius is the root mean square distance",
                  {{0, 0}, {2, 0}, {0, 2}, {2, 2}, {1, 1}},
                  true,
                  {1, 1, std::sqrt(1.6f)}},
             Case{"NaN", {{8, 4}, {3, 9}, {kNaN, 4}, {3, -1}}, true, {kNaN, kNaN, kNaN}},
         }) {
        KxCircle circle(9, 9, 9);
        Cloud cloud = cloudOf(c.points);
        EXPECT_EQ(circle.calcFromPointCloud(cloud), c.isDone) << c.desc;
        EXPECT_EQ(exact(circle), exact(c.circle)) << c.desc;
    }
}

TEST(Circle, FitOfAnArcIsAccurate) {
    QList<KxPointXY> arc;
    for (int i = 0; i < 200; ++i) {
        const double angle = 0.01 * i;
        arc.append({static_cast<float>(3 + 5 * std::cos(angle)), static_cast<float>(4 + 5 * std::sin(angle))});
    }
    Cloud cloud = cloudOf(arc);
    KxCircle circle;
    ASSERT_TRUE(circle.calcFromPointCloud(cloud));
    EXPECT_NEAR(circle.x, 3, 2e-3);
    EXPECT_NEAR(circle.y, 4, 2e-3);
    EXPECT_NEAR(circle.radius, 5, 2e-3);
}

TEST(Plane, ThroughThreePointsInDouble) {
    KxPointXYZ p1(1, 0, 0);
    KxPointXYZ p2(0, 2, 0);
    KxPointXYZ p3(0, 0, 4);
    KxPlane p;
    p.calcFromPoints(p1, p2, p3);
    EXPECT_EQ(exact(p), exact(plane(8, 4, 2, -8)));
    // The products lie beyond single precision: (2^12 + 1)^2 - 2^24 is 2^13 in floats.
    KxPointXYZ q1(4097, 4096, 0);
    KxPointXYZ q2(4096, 4097, 0);
    KxPointXYZ q3(0, 0, 1);
    p.calcFromPoints(q1, q2, q3);
    EXPECT_EQ(exact(p), exact(plane(1, 1, 8193, -8193)));
    p.calcFromPoints(p1, p1, p2);
    EXPECT_EQ(p.a + p.b + p.c + p.d, 0.0f) << "points on one line";
    EXPECT_TRUE(std::isnan(p.calcDistance(p1))) << "no normal";

    KxPlane level = plane(0, 0, 2, -6);
    KxPointXYZ origin(0, 0, 0);
    EXPECT_EQ(level.calcDistance(origin), 3.0f);
    KxPlane unknown;
    EXPECT_TRUE(std::isnan(KxPlane::calcDistance(unknown, origin)));
}

TEST(FreeVector, LengthSumAngle) {
    KxFreeVector v(3, 4);
    EXPECT_EQ(v.size(), 5.0f);
    for (const float len : {0.0f, -0.0f, -1.0f, -kInfinity}) {
        EXPECT_FALSE(v.resize(len));
        EXPECT_EQ(exact(v), exact(KxFreeVector(3, 4)));
    }
    EXPECT_TRUE(v.resize(10));
    EXPECT_EQ(exact(v), exact(KxFreeVector(6, 8)));
    EXPECT_TRUE(v.resize(kNaN));
    EXPECT_EQ(exact(v), exact(KxFreeVector()));

    KxFreeVector right(3, 0);
    KxFreeVector up(0, 4);
    KxFreeVector left(-3, 0);
    EXPECT_TRUE(v.sumVectors(right, up));
    EXPECT_EQ(exact(v), exact(KxFreeVector(0.6f, 0.8f)));
    EXPECT_FALSE(v.sumVectors(right, left));
    EXPECT_EQ(exact(v), exact(KxFreeVector(0.6f, 0.8f)));
    EXPECT_TRUE(up.sumVectors(up, up)) << "the receiver as both arguments";
    EXPECT_EQ(exact(up), exact(KxFreeVector(0, 1)));

    KxFreeVector down(0, -1);
    KxFreeVector zero(0, 0);
    EXPECT_FLOAT_EQ(right.calcAngleBetweenVectors(down), 90.0f);
    EXPECT_FLOAT_EQ(KxFreeVector::calcAngleBetweenVectors(right, left), 180.0f);
    EXPECT_EQ(right.calcAngleBetweenVectors(right), 0.0f);
    EXPECT_TRUE(std::isnan(right.calcAngleBetweenVectors(zero)));
}

TEST(FreeVector, DirectionOfAProfile) {
    struct Case {
        const char* desc;
        int start, dir;
        float len;
        bool isDone;
        KxFreeVector v;
    };
    Cloud cloud = cloudOf({{0, 0}, {1, 0}, {1, 3}, {1, 7}, {5, 0}});
    constexpr int kMax = std::numeric_limits<int>::max();
    constexpr int kMin = std::numeric_limits<int>::min();
    for (const Case& c : {
             Case{"base is start + dir", 0, 1, 1, true, {0, 1}},
             Case{"a distance of len is far enough", 0, 1, 3, true, {0, 1}},
             Case{"to the end when nothing is far enough", 1, 1, 1000, true, {0.8f, -0.6f}},
             Case{"NaN len walks to the end", 1, 1, kNaN, true, {0.8f, -0.6f}},
             Case{"backwards", 3, -1, 1, true, {0, -1}},
             Case{"start before the cloud", -1, 1, 1, true, {1, 0}},
             Case{"start behind the cloud", 5, -1, 1, true, {-4 / std::sqrt(65.0f), 7 / std::sqrt(65.0f)}},
             Case{"no step from the last point", 3, 1, 1, false, {}},
             Case{"no step from the first point", 1, -1, 1, false, {}},
             Case{"base outside", 4, 1, 1, false, {}},
             Case{"len 0", 0, 1, 0, false, {}},
             Case{"len negative", 0, 1, -1, false, {}},
             Case{"dir 0", 0, 0, 1, false, {}},
             Case{"dir 2", 0, 2, 1, false, {}},
             Case{"largest start", kMax, 1, 1, false, {}},
             Case{"smallest start", kMin, -1, 1, false, {}},
         }) {
        KxFreeVector v(9, 9);
        EXPECT_EQ(v.calcFromPointCloud(cloud, c.start, c.dir, c.len), c.isDone) << c.desc;
        EXPECT_EQ(exact(v), exact(c.isDone ? c.v : KxFreeVector(9, 9))) << c.desc;
    }
}
