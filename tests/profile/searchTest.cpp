#include "profileSupport.h"

using namespace KxMath;
using namespace testing_support;

namespace {

int plainFindNearest(const Points& points, float x, bool fromRight) {
    Points sorted = points;
    sortByExchanges(sorted);
    if (points.isEmpty()) {
        return -1;
    }
    if (!fromRight && x <= sorted.last().x) {
        for (int i = 0; i < points.size(); ++i) {
            if (points[i].x >= x) {
                return i;
            }
        }
    }
    if (fromRight && sorted.first().x <= x) {
        for (int i = static_cast<int>(points.size()) - 1; i >= 0; --i) {
            if (points[i].x <= x) {
                return i;
            }
        }
    }
    return -1;
}

int plainRemoveDuplicates(Points& points) {
    int removed = 0;
    for (qsizetype i = 0; i < points.size(); ++i) {
        for (qsizetype j = points.size() - 1; j > i; --j) {
            if (points[j].x == points[i].x) {
                points.removeAt(j);
                ++removed;
            }
        }
    }
    return removed;
}

} // namespace

TEST(Search, FindNearestToXFollowsItsDefinition) {
    Nasty nasty(21);
    for (int round = 0; round < 2000; ++round) {
        const Points points = nastyPoints(nasty, 80);
        KxProfile profile = profileOf(points);
        for (int k = 0; k < 5; ++k) {
            const float x =
                points.isEmpty() || nasty.chance(40) ? nastyLimit(nasty) : points[nasty.below(profile.size())].x;
            const bool fromRight = nasty.chance(50);
            const int expected = plainFindNearest(points, x, fromRight);
            ASSERT_EQ(profile.findNearestToX(x, fromRight), expected) << round << " x " << x;
            KxPointXY found(-7.0f, -8.0f);
            ASSERT_EQ(profile.findNearestToX(x, found, fromRight), expected >= 0);
            ASSERT_EQ(exact(found), exact(expected < 0 ? KxPointXY(-7.0f, -8.0f) : points[expected]));
        }
        expectPoints(profile, points);
    }
}

TEST(Search, RemoveDuplicatesFollowsItsDefinition) {
    Nasty nasty(22);
    int removed = 0;
    for (int round = 0; round < 2000; ++round) {
        Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        const int expected = plainRemoveDuplicates(points);
        ASSERT_EQ(profile.removeDuplicates(), expected) << round;
        expectPoints(profile, points);
        ASSERT_FALSE(HasFailure()) << round;
        removed += expected;
    }
    EXPECT_GT(removed, 1000);
}

TEST(Search, FindsTheFirstPointAtOrBeyondAndNotTheNearest) {
    KxProfile profile = profileOf({{0, 0}, {10, 1}, {4, 2}, {kNaN, 3}, {5, 4}});
    EXPECT_EQ(profile.findNearestToX(4.0f, false), 1);
    EXPECT_EQ(profile.findNearestToX(4.0f, true), 2);
    EXPECT_EQ(profile.findNearestToX(6.0f, false), -1); // the last one after sorting is 5: NaN keeps its place
    EXPECT_EQ(profile.findNearestToX(-1.0f, true), -1);
}
