// Fails on purpose, in the round with 100 points: the test of what a failing test prints.
#include "support/testing.h"

using namespace testing_support;

TEST(PlantedDifference, AtPoint60Of100) {
    forNasty(7, 10, [round = 0](Nasty& nasty) mutable {
        nasty.below(5);
        Points points = pointsFor(++round * 25, [](int i) { return at(i, i / 3.0); });
        nasty.input().add(points);
        const Points expected = points;
        if (points.size() == 100) {
            points[60].y = std::nextafter(points[60].y, kInf);
        }
        ASSERT_EXACT(points, expected);
    });
}
