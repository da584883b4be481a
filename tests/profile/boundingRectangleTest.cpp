#include "profileSupport.h"

using namespace testing_support;

namespace {

// Deliberately no rotation changes the cached width: the first angle is the best, the last one where it is unknown.
TEST(BoundingRectangle, EqualsThePlainDefinition) {
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

TEST(BoundingRectangle, CornersNeedACachedRange) {
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

} // namespace
