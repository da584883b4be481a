#include "profileSupport.h"

#include <cmath>

using namespace KxMath;
using namespace testing_support;

namespace {

struct Rect {
    float width = 1.0f, height = 2.0f, angle = 3.0f;
};

/// With every rotation made, and the width read from the cached range each time.
Rect plainRect(KxProfile& receiver, float angleStep) {
    KxProfile work(receiver);
    float ignored[4];
    KxPointXY centre;
    work.calcRange(&ignored[0], &ignored[1], &ignored[2], &ignored[3], nullptr);
    work.calcCenterPoint(centre);
    float best = kNaN;
    Rect rect{kNaN, kNaN, kNaN};
    const int steps = static_cast<int>(180.0 / static_cast<double>(angleStep));
    for (int i = 0; i < steps; ++i) {
        work.calcRange(&ignored[0], &ignored[1], &ignored[2], &ignored[3], nullptr);
        const float width = work.size_x();
        if (std::isnan(best) || width < best) {
            best = width;
            rect.angle = static_cast<float>(i) * angleStep;
        }
        work.toPolar();
        work.rotatePolar(angleStep);
        work.toEvklid();
    }
    work = receiver;
    work.shift(-centre.x, -centre.y, 0.0f);
    work.rotateEvklid(rect.angle);
    work.shift(centre.x, centre.y, 0.0f);
    rect.width = work.size_x();
    rect.height = work.size_y();
    return rect;
}

} // namespace

TEST(Shapes, RectFollowsItsDefinition) {
    Nasty nasty(121);
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const Points points = nastyPoints(nasty, 20);
        KxProfile profile = profileOf(points);
        if (nasty.chance(60)) {
            profile.maxX = nasty.pick(std::array{kNaN, 5.0f});
            profile.maxY = nasty.pick(std::array{kNaN, 5.0f});
        }
        const ExactList range = exactRange(profile);
        const float angleStep = nasty.pick(std::array{10.0f, 7.3f, 1.0f, 60.1f, 180.0f, 181.0f, kInf});
        const Rect plain = plainRect(profile, angleStep);
        Rect rect;
        profile.calcRect(&rect.width, &rect.height, &rect.angle, angleStep);
        EXPECT_EQ(exact(rect.width), exact(plain.width));
        EXPECT_EQ(exact(rect.height), exact(plain.height));
        EXPECT_EQ(exact(rect.angle), exact(plain.angle)) << angleStep;
        EXPECT_EQ(exact(profile.points), exact(points));
        EXPECT_EQ(exactRange(profile), range);
        ASSERT_FALSE(HasFailure());
    }
}

TEST(Shapes, RectWithoutAStepIsUnknown) {
    for (const float angleStep : {0.0f, -0.0f, -10.0f, -kInf, kNaN}) {
        KxProfile profile = profileOf({{0, 0}, {1, 1}});
        Rect rect;
        profile.calcRect(&rect.width, &rect.height, &rect.angle, angleStep);
        EXPECT_TRUE(std::isnan(rect.width) && std::isnan(rect.height) && std::isnan(rect.angle)) << angleStep;
    }
}

TEST(Shapes, RectCornersNeedACachedRange) {
    KxProfile profile;
    profile.points = {{0, 0}, {4, 1}, {2, 2}};
    KxProfile corners = profileOf({{9, 9}});
    float angle = 7.0f;
    profile.calcRect(corners, &angle, 10.0f);
    EXPECT_EQ(exact(corners.points), exact(Points(4))); // unknown sizes; looking for the centre filled the range
    EXPECT_EQ(angle, 0.0f);
    profile.calcRect(corners, nullptr, 10.0f);
    EXPECT_EQ(exact(corners.points), exact(Points{{0, 0}, {0, 2}, {4, 2}, {4, 0}}));
    profile.calcRect(profile, nullptr, 10.0f);
    EXPECT_EQ(exact(profile.points), exact(Points{{0, 0}, {0, 2}, {4, 2}, {4, 0}}));
}

TEST(Shapes, WeldIsTheTopBand) {
    const struct {
        const char* desc;
        Points points;
        bool isFound;
        float b, centerX;
    } cases[] = {
        {"flat", {{0, 3}, {1, 3}, {2, 3}, {3, 3}, {5, 3}}, true, 3, 2.5f},
        {"four points in the band", {{0, 3}, {1, 3}, {2, 3}, {3, 3}, {5, 2}}, false, 8, 9},
        {"on the edge of the band", {{0, 0.1f}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {9, 0}}, true, 0.1f, 2},
        {"none", {}, false, 8, 9},
    };
    for (const auto& c : cases) {
        KxProfile profile = profileOf(c.points);
        KxLine line(7.0f, 8.0f);
        float centerX = 9.0f;
        EXPECT_EQ(profile.detectWeld(line, &centerX), c.isFound) << c.desc;
        EXPECT_EQ(line.k, 7.0f) << c.desc; // never written
        EXPECT_EQ(exact(line.b), exact(c.b)) << c.desc;
        EXPECT_EQ(exact(centerX), exact(c.centerX)) << c.desc;
        expectPoints(profile, c.points);
    }
}

TEST(Shapes, CircleLeavesOutTheLowestBand) {
    Points points = {{-30, -5}, {0, -5}, {40, -4.5f}}; // a base below the arc
    for (int i = 20; i <= 160; i += 5) {
        const double angle = i * M_PI / 180.0;
        points.append(KxPointXY(static_cast<float>(2.0 + 10.0 * std::cos(angle)),
                                static_cast<float>(1.0 + 10.0 * std::sin(angle))));
    }
    KxProfile profile = profileOf(points);
    KxCircle circle;
    ASSERT_TRUE(profile.detectCircle(circle));
    EXPECT_NEAR(circle.x, 2.0f, 1e-3f);
    EXPECT_NEAR(circle.y, 1.0f, 1e-3f);
    EXPECT_NEAR(circle.radius, 10.0f, 1e-3f);
    expectPoints(profile, points);
    EXPECT_FALSE(profileOf({}).detectCircle(circle));
    EXPECT_FALSE(profileOf({{0, 0}, {1, 0}, {2, 0}}).detectCircle(circle)); // all within the lowest band
}
