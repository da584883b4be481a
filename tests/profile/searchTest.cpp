#include "profileSupport.h"

using namespace testing_support;

namespace {

/// Deliberately not the nearest: the first point at or beyond x, if the order by x ends at or beyond it.
int plainFindNearest(const Points& points, float x, bool fromRight) {
    Points sorted = points;
    sortByExchanges(sorted);
    const auto isBeyond = [&](const KxPointXY& p) { return fromRight ? p.x <= x : p.x >= x; };
    if (points.isEmpty() || !isBeyond(fromRight ? sorted.first() : sorted.last())) {
        return -1;
    }
    for (int k = 0, n = static_cast<int>(points.size()); k < n; ++k) {
        const int i = fromRight ? n - 1 - k : k;
        if (isBeyond(points[i])) {
            return i;
        }
    }
    return -1;
}

TEST(Search, FindNearestToXEqualsThePlainDefinition) {
    forNasty(21, 2000, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 80);
        KxProfile profile = profileOf(points);
        for (int k = 0; k < 5; ++k) {
            const float x =
                points.isEmpty() || nasty.chance(40) ? nastyLimit(nasty) : points[nasty.below(profile.size())].x;
            const bool fromRight = nasty.chance(50);
            const int expected = plainFindNearest(points, x, fromRight);
            ASSERT_EQ(profile.findNearestToX(x, fromRight), expected) << "x " << x;
            KxPointXY found(-7.0f, -8.0f);
            ASSERT_EQ(profile.findNearestToX(x, found, fromRight), expected >= 0);
            ASSERT_EXACT(found, expected < 0 ? KxPointXY(-7.0f, -8.0f) : points[expected]);
        }
        expectPoints(profile, points);
    });
}

} // namespace
