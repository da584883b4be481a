#include "profileSupport.h"

using namespace testing_support;

namespace {

// Deliberately no rotation changes the cached width: the first angle is the best, the last one where it is unknown.
TEST(Shapes, RectFollowsItsDefinition) {
    forNasty(121, 300, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 20);
        KxProfile profile = profileOf(points);
        profile.maxX = nasty.pick(std::array{kNaN, 5.0f, 102.0f});
        profile.maxY = nasty.pick(std::array{kNaN, 5.0f, 102.0f});
        const ExactList range = exactRange(profile);
        const float angleStep = nasty.pick(std::array{10.0f, 7.3f, 1.0f, 60.1f, 180.0f, 181.0f, kInf});
        const int rounds = static_cast<int>(180.0 / static_cast<double>(angleStep));
        KxProfile work(profile);
        KxPointXY centre;
        work.calcCenterPoint(centre);
        const float last = std::isnan(work.size_x()) ? static_cast<float>(rounds - 1) * angleStep : 0.0f;
        float width = 1.0f, height = 2.0f, angle = 3.0f;
        profile.calcRect(&width, &height, &angle, angleStep);
        EXPECT_EXACT(exact(width, height, angle), exact(profile.size_x(), profile.size_y(), rounds < 1 ? kNaN : last));
        EXPECT_EXACT(profile.points, points);
        EXPECT_EXACT(exactRange(profile), range);
        const float noStep = nasty.pick(std::array{0.0f, -0.0f, -10.0f, -kInf, kNaN});
        profile.calcRect(&width, &height, &angle, noStep);
        EXPECT_EXACT(exact(width, height, angle), exact(kNaN, kNaN, kNaN)) << noStep;
    });
}

TEST(Shapes, RectCornersNeedACachedRange) {
    KxProfile profile;
    profile.points = {{0, 0}, {4, 1}, {2, 2}};
    KxProfile corners = profileOf({{9, 9}});
    float angle = 7.0f;
    profile.calcRect(corners, &angle, 10.0f);
    EXPECT_EXACT(corners.points, Points(4)); // unknown sizes; looking for the centre filled the range
    EXPECT_EQ(angle, 0.0f);
    profile.calcRect(profile, nullptr, 10.0f);
    EXPECT_EXACT(profile.points, exact(Points{{0, 0}, {0, 2}, {4, 2}, {4, 0}}));
}

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
