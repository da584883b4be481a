#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(Shapes, WeldIsTheTopBand) {
    const std::tuple<const char*, Points, bool, float, float> cases[] = {
        {"flat", {{0, 3}, {1, 3}, {2, 3}, {3, 3}, {5, 3}}, true, 3, 2.5f},
        {"four points in the band", {{0, 3}, {1, 3}, {2, 3}, {3, 3}, {5, 2}}, false, 8, 9},
        {"on the edge of the band", {{2, 0.1f}, {3, 1}, {2, 1}, {3, 1}, {6, 1}, {9, 0}}, true, 0.1f, 4},
        {"none", {}, false, 8, 9},
    };
    for (const auto& [desc, points, isFound, b, x] : cases) {
        SCOPED_TRACE(desc);
        KxProfile profile = profileOf(points);
        KxLine line(7.0f, 8.0f);
        float centerX = 9.0f;
        EXPECT_EQ(profile.detectWeld(line, &centerX), isFound);
        EXPECT_EXACT(exact(QList<float>{line.k, line.b, centerX}), exact(QList<float>{7.0f, b, x}));
        expectPoints(profile, points);
    }
}

TEST(Shapes, CircleLeavesOutTheLowestBand) {
    Points points = {{-30, -5}, {0, -5}, {40, -4.001f}}; // a base below the arc
    for (int i = 20; i <= 160; i += 5) {
        const double angle = i * M_PI / 180.0;
        points.append(at(2.0 + 10.0 * std::cos(angle), 1.0 + 10.0 * std::sin(angle)));
    }
    KxProfile profile = profileOf(points);
    KxCircle circle;
    ASSERT_TRUE(profile.detectCircle(circle));
    EXPECT_LT(std::hypot(circle.x - 2.0f, circle.y - 1.0f, circle.radius - 10.0f), 1e-3f);
    expectPoints(profile, points);
    EXPECT_FALSE(profileOf({}).detectCircle(circle));
    EXPECT_FALSE(profileOf({{0, 0}, {1, 0}, {2, 0}}).detectCircle(circle)); // all within the lowest band
    EXPECT_TRUE(profileOf({{0, -1}, {1, 0}, {2, 0}, {1, 1}}).detectCircle(circle)); // its upper edge is kept
}

} // namespace
