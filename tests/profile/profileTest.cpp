#include "profileSupport.h"

#include <QtCore/QRectF>

using namespace KxMath;
using namespace testing_support;

namespace {

/// The smallest and largest value of one coordinate and their positions, each bound looked for on its own unless a
/// point has just become the smallest.
struct PlainRange {
    float min, max;
    int minAt = 0, maxAt = 0;

    PlainRange(const Points& points, float KxPointXY::*coordinate) {
        min = max = points[0].*coordinate;
        for (int i = 1; i < points.size(); ++i) {
            const float v = points[i].*coordinate;
            if (v < min) {
                min = v;
                minAt = i;
            } else if (v > max) {
                max = v;
                maxAt = i;
            }
        }
    }
};

/// One bound after the other from the last point down; a bound that is NaN is not applied.
int plainTrim(Points& points, float minX, float minY, float maxX, float maxY) {
    int removed = 0;
    for (qsizetype i = points.size() - 1; i >= 0; --i) {
        const KxPointXY p = points[i];
        if ((!std::isnan(minX) && p.x < minX) || (!std::isnan(maxX) && p.x > maxX) || //
            (!std::isnan(minY) && p.y < minY) || (!std::isnan(maxY) && p.y > maxY)) {
            points.removeAt(i);
            ++removed;
        }
    }
    return removed;
}

} // namespace

TEST(Profile, RangeFollowsItsDefinition) {
    Nasty nasty(11);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        const Points points = nastyPoints(nasty);
        if (points.isEmpty()) {
            continue;
        }
        KxProfile profile = profileOf(points);
        const PlainRange x(points, &KxPointXY::x);
        const PlainRange y(points, &KxPointXY::y);
        float r[4];
        int at[4];
        ASSERT_TRUE(profile.calcRange(&r[0], &r[1], &r[2], &r[3], at));
        EXPECT_EQ(exact(QList<float>{r[0], r[1], r[2], r[3]}), exact(QList<float>{x.min, y.min, x.max, y.max}));
        EXPECT_EQ(exact(QList<int>(at, at + 4)), exact(QList<int>{x.minAt, x.maxAt, y.minAt, y.maxAt}));
        expectPoints(profile, points); // the cached range is not touched
        ASSERT_TRUE(profile.calcRange());
        EXPECT_EQ(exactRange(profile), (ExactList{exact(x.min), exact(x.max), exact(y.min), exact(y.max), //
                                                  exact(kNaN), exact(kNaN)}));
        ASSERT_FALSE(HasFailure());
    }
}

TEST(Profile, RangeOfNoPointsTouchesNothing) {
    KxProfile empty = profileOf({});
    float bound = 7.0f;
    int indices[4] = {5, 6, 7, 8};
    QRectF rect(1.0, 2.0, 3.0, 4.0);
    EXPECT_FALSE(empty.calcRange());
    EXPECT_FALSE(empty.calcRange(&bound, &bound, &bound, &bound, indices));
    EXPECT_FALSE(empty.calcRange(rect, indices));
    EXPECT_EQ(bound, 7.0f);
    EXPECT_EQ(indices[0], 5);
    EXPECT_EQ(rect, QRectF(1.0, 2.0, 3.0, 4.0));
    EXPECT_EQ(empty.trim(0.0f, 0.0f, 0.0f, 0.0f), 0);
    expectPoints(empty, {});
    EXPECT_TRUE(std::isnan(empty.calcCenterX()) && std::isnan(empty.calcCenterY()));
}

TEST(Profile, RangeRectangleHasItsTopLeftAtTheLargestY) {
    KxProfile profile = profileOf({{1, 3}, {3, 2}, {2, 5}});
    QRectF rect(40.0, 50.0, 60.0, 70.0);
    ASSERT_TRUE(profile.calcRange(rect, nullptr));
    EXPECT_EQ(rect, QRectF(1.0, 5.0, 2.0, -3.0));
    // Used for trimming, its y bounds are swapped.
    EXPECT_EQ(profile.trim(rect), 3);
    KxProfile flat = profileOf({{1, 4}, {2, 4}});
    ASSERT_TRUE(flat.calcRange(rect, nullptr));
    EXPECT_EQ(flat.trim(rect), 0);
}

TEST(Profile, TrimFollowsItsDefinition) {
    Nasty nasty(12);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        Points points = nastyPoints(nasty);
        const float minX = nastyLimit(nasty), minY = nastyLimit(nasty);
        const float maxX = nastyLimit(nasty), maxY = nastyLimit(nasty);
        KxProfile profile = profileOf(points);
        int removed = 0;
        int expected = 0;
        switch (nasty.below(6)) {
        case 0:
            removed = profile.trim(minX, minY, maxX, maxY);
            expected = plainTrim(points, minX, minY, maxX, maxY);
            break;
        case 1:
            removed = profile.trimLower(minY);
            expected = plainTrim(points, kNaN, minY, kNaN, kNaN);
            break;
        case 2:
            removed = profile.trimUpper(maxY);
            expected = plainTrim(points, kNaN, kNaN, kNaN, maxY);
            break;
        case 3:
            removed = profile.trimX(minX, maxX);
            expected = plainTrim(points, minX, kNaN, maxX, kNaN);
            break;
        case 4:
            removed = profile.trimY(minY, maxY);
            expected = plainTrim(points, kNaN, minY, kNaN, maxY);
            break;
        default: {
            const QRectF rect(QPointF(-3.3, 0.1), QSizeF(nasty.below(100) * 0.7 - 5.0, 40.1));
            removed = profile.trim(rect);
            expected = plainTrim(points, -3.3f, 0.1f, static_cast<float>(rect.x() + rect.width()),
                                 static_cast<float>(rect.y() + rect.height()));
        }
        }
        EXPECT_EQ(removed, expected);
        expectPoints(profile, points);
        ASSERT_FALSE(HasFailure());
    }
}

TEST(Profile, BufferIsAppended) {
    float buffer[] = {1.0f, 2.0f, kNaN, -0.0f};
    KxProfile profile(buffer, 2);
    profile.copyFromXYPointsBuffer(buffer, 1);
    profile.copyFromXYPointsBuffer(nullptr, 0);
    EXPECT_EQ(exact(profile.points), exact(Points{{1, 2}, {kNaN, -0.0f}, {1, 2}}));
    EXPECT_TRUE(std::isnan(profile.minX));
}

TEST(Profile, CopiesAreDeepAndTakeTheRange) {
    KxProfile source = profileOf({{1, 2}, {3, 4}});
    KxProfile copy(source);
    KxProfile assigned;
    assigned.points.append(KxPointXY(9.0f, 9.0f));
    KxProfile& same = assigned = source;
    EXPECT_EQ(&same, &assigned);
    source.points[0].x = 7.0f;
    expectPoints(copy, {{1, 2}, {3, 4}});
    expectPoints(assigned, {{1, 2}, {3, 4}});
}

TEST(Profile, CentreFillsAnUnknownRange) {
    KxProfile profile;
    profile.points = {{1, 2}, {5, 10}};
    EXPECT_EQ(profile.calcCenterX(), 3.0f);
    EXPECT_EQ(profile.calcCenterY(), 6.0f);
    EXPECT_EQ(profile.maxX, 5.0f);
}
