#include "profileSupport.h"

#include <cmath>

using namespace KxMath;
using namespace testing_support;

namespace {

/// The area of a closed polygon (shoelace formula).
double polygonArea(const Points& p) {
    double twice = 0.0;
    for (qsizetype i = 0; i < p.size(); ++i) {
        const KxPointXY& a = p[i];
        const KxPointXY& b = p[(i + 1) % p.size()];
        twice +=
            static_cast<double>(a.x) * static_cast<double>(b.y) - static_cast<double>(b.x) * static_cast<double>(a.y);
    }
    return 0.5 * twice;
}

} // namespace

TEST(Polar, FormOfSpecialPoints) {
    const float root2 = std::sqrt(2.0f);
    const struct {
        KxPointXY point;
        KxPointXY polar;
    } cases[] = {
        {{0, 0}, {0, 0}},
        {{-0.0f, -0.0f}, {0, 0}},
        {{0, 5}, {5, 90}},
        {{-0.0f, 5}, {5, 90}},
        {{0, -5}, {5, 270}},
        {{-1, 0}, {1, 180}},
        {{1, -0.0f}, {1, -0.0f}},
        {{1, 1}, {root2, 45}},
        {{1, -1}, {root2, 315}},
        {{-1, -1}, {root2, 225}},
        {{-1, 1}, {root2, 135}},
        {{1, 2}, {std::sqrt(5.0f), 63.434948f}}, // the last digits need pi as a float; with a better pi they are
        {{1, -3}, {std::sqrt(10.0f), 288.434967f}}, // 63.4349518, 288.434937 and 123.690063
        {{-2, 3}, {std::sqrt(13.0f), 123.690071f}},
        {{kNaN, 1}, {kNaN, 0}},
        {{1, kNaN}, {kNaN, 0}},
        {{0, kNaN}, {kNaN, 0}},
        {{-1, kNaN}, {kNaN, kNaN}},
        {{-kInf, 1}, {kInf, 180}},
        {{1, kInf}, {kInf, 90}},
        {{kInf, kInf}, {kInf, kNaN}},
        {{1e20f, 1}, {kInf, 180.0f * 1e-20f / 3.1415927f}}, // the sum of squares is a float
    };
    for (const auto& c : cases) {
        KxProfile profile = profileOf({c.point});
        profile.toPolar();
        expectPoints(profile, {c.polar});
        EXPECT_FALSE(HasFailure()) << c.point.x << ' ' << c.point.y;
    }
}

TEST(Polar, AnglesAndBackAreWithinARoundingOfTheTruth) {
    Nasty nasty(61);
    for (int round = 0; round < 20000; ++round) {
        const KxPointXY p(nasty.plain(), nasty.plain());
        nasty.nextCase();
        KxProfile profile = profileOf({p});
        profile.toPolar();
        const float radius = profile.points[0].x;
        const float angle = profile.points[0].y;
        double truth = std::atan2(static_cast<double>(p.y), static_cast<double>(p.x)) * 180.0 / M_PI;
        truth += truth < 0.0 ? 360.0 : 0.0;
        // A rounding of the quotient, of the arc tangent and of the sum, and pi as a float.
        ASSERT_NEAR(static_cast<double>(angle), truth, 4.0e-5) << p.x << ' ' << p.y;
        ASSERT_GE(angle, 0.0f);
        ASSERT_LE(angle, 360.0f);
        profile.toEvklid();
        ASSERT_NEAR(profile.points[0].x, p.x, 2e-6f * radius);
        ASSERT_NEAR(profile.points[0].y, p.y, 2e-6f * radius);
    }
}

TEST(Polar, EvklidFormOfSpecialPoints) {
    // Pi is a float: the sine of 180 degrees is not 0 but that of the error of pi, and last digits differ elsewhere.
    KxProfile profile = profileOf({{2, 0}, {2, 90}, {2, 180}, {1, 10}, {1, 34}, {kInf, 45}, {1, kInf}, {kNaN, 0}});
    profile.toEvklid();
    expectPoints(profile, {{2, 0},
                           {-4.371139e-08f * 2, 2},
                           {-2, -8.7422777e-08f * 2},
                           {0.98480773f, 0.173648193f},
                           {0.829037547f, 0.559192955f},
                           {kInf, kInf},
                           {kNaN, kNaN},
                           {kNaN, kNaN}});
}

TEST(Polar, AnglesAreNotWrapped) {
    KxProfile profile = profileOf({{1, 300}, {1, kNaN}});
    profile.rotatePolar(100.0f);
    expectPoints(profile, {{1, 400}, {1, kNaN}});
}

TEST(Polar, RotationByZeroTouchesNoBit) {
    Nasty nasty(62);
    for (int round = 0; round < 50; ++round) {
        const Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        profile.rotatePolar(0.0f);
        profile.rotateEvklid(-0.0f);
        expectPoints(profile, points);
        // About a centre the shifts are made all the same, and round.
        KxProfile fixed = profileOf(points);
        KxPointXY center(1e6f, 0.3f);
        fixed.rotateFixed(0.0f, center);
        profile.shift(-1e6f, -0.3f, 0.0f);
        profile.shift(1e6f, 0.3f, 0.0f);
        expectPoints(fixed, profile.points);
    }
}

TEST(Polar, RotationKeepsAreasAndTheCentre) {
    KxProfile profile = profileOf({{10, 20}, {110, 25}, {90, 140}, {40, 160}, {5, 70}});
    const double area = polygonArea(profile.points);
    const Points before = profile.points;
    for (const float angle : {0.5f, 90.0f, 123.4f, -47.0f, 360.0f, 1080.0f}) {
        profile.rotateEvklid(angle);
        EXPECT_NEAR(polygonArea(profile.points), area, 1e-5 * area) << angle;
        const KxPointXY corner = profile.points[2];
        profile.rotateFixed(-angle, profile.points[2]); // a centre that is itself a point of the profile
        EXPECT_EQ(exact(profile.points[2]), exact(corner)) << angle;
        EXPECT_NEAR(polygonArea(profile.points), area, 1e-5 * area) << angle;
    }
    profile.points = before;
    KxPointXY center(40.0f, 160.0f);
    profile.rotateFixed(90.0f, center); // counter-clockwise: what was right of the centre is above it
    EXPECT_NEAR(profile.points[3].x, 40.0f, 1e-4f);
    EXPECT_NEAR(profile.points[3].y, 160.0f, 1e-4f);
    EXPECT_NEAR(profile.points[2].x, 60.0f, 1e-4f);
    EXPECT_NEAR(profile.points[2].y, 210.0f, 1e-4f);
}
