#include "profileSupport.h"

#include <bit>
#include <random>
#include <vector>

using namespace KxMath;
using namespace testing_support;

namespace {

TEST(Polar, FormOfSpecialPoints) {
    const float root2 = std::sqrt(2.0f);
    const struct {
        KxPointXY point;
        KxPointXY polar;
    } cases[] = {
        {{0, 0}, {0, 0}},
        {{-0.0f, -0.0f}, {0, 0}},
        {{0, 5}, {5, 90}},
        {{0, -5}, {5, 270}},
        {{-1, 0}, {1, 180}},
        {{1, -0.0f}, {1, -0.0f}},
        {{1, -1}, {root2, 315}},
        {{1, 2}, {std::sqrt(5.0f), 63.434948f}}, // the last digits need pi as a float; with a better pi they are
        {{1, -3}, {std::sqrt(10.0f), 288.434967f}}, // 63.4349518, 288.434937 and 123.690063
        {{-2, 3}, {std::sqrt(13.0f), 123.690071f}},
        {{kNaN, 1}, {kNaN, 0}},
        {{1, kNaN}, {kNaN, 0}},
        {{0, kNaN}, {kNaN, 0}},
        {{-1, kNaN}, {kNaN, kNaN}},
        {{-kInf, 1}, {kInf, 180}},
        {{kInf, kInf}, {kInf, kNaN}},
        {{1e20f, 1}, {kInf, 180.0f * 1e-20f / 3.1415927f}}, // the sum of squares is a float
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.point.x << ' ' << c.point.y);
        KxProfile profile = profileOf({c.point});
        profile.toPolar();
        expectPoints(profile, {c.polar});
    }
    // Pi is a float: the sine of 180 degrees is not 0 but that of the error of pi, and last digits differ elsewhere.
    KxProfile profile = profileOf({{2, 90}, {2, 180}, {1, 10}, {1, 34}, {kInf, 45}, {1, kInf}});
    profile.toEvklid();
    expectPoints(profile, {{-4.371139e-08f * 2, 2},
                           {-2, -8.7422777e-08f * 2},
                           {0.98480773f, 0.173648193f},
                           {0.829037547f, 0.559192955f},
                           {kInf, kInf},
                           {kNaN, kNaN}});
    profile = profileOf({{1, 300}, {1, kNaN}});
    profile.rotatePolar(100.0f);
    expectPoints(profile, {{1, 400}, {1, kNaN}}); // not wrapped
}

/// The angle of (a, b) by the functions of the standard library, for a other than 0.
float plainAngle(float a, float b) {
    constexpr double kPi = 3.1415927410125732;
    const float arcTangent = static_cast<float>(std::atan(static_cast<double>(b / a)));
    const double angle = static_cast<double>(arcTangent) * 180.0 / kPi;
    return static_cast<float>(a < 0.0f ? angle + 180.0 : b < 0.0f ? angle + 360.0 : angle);
}

TEST(Polar, BlocksOfPointsGiveWhatTheStandardFunctionsGive) {
    // Among the quotients those whose arc tangent lies just beside the middle between two floats.
    std::vector<float> quotients = {0.395960093f, 0.400389254f, 0.406424612f, 0.409638137f, 0.411800712f, 0.413976431f};
    std::vector<float> angles = {0.0f, -0.0f, 90.0f, 5729577.0f, 5729579.0f, -1e9f, 3.4e38f, 1e-40f};
    std::mt19937 random(64);
    for (int i = 0; i < 100000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        quotients.push_back(std::abs(std::bit_cast<float>(bits)));
        angles.push_back(static_cast<float>(static_cast<int>(bits)) * 1e-6f);
    }
    for (float& quotient : quotients) {
        quotient = quotient < 1e18f ? quotient : 1.0f; // NaN too: their points are among the special ones
    }
    KxProfile polar;
    KxProfile plane;
    for (std::size_t i = 0; i < quotients.size(); ++i) {
        polar.points.append(KxPointXY(i % 2 == 0 ? 1.0f : -1.0f, quotients[i]));
        plane.points.append(KxPointXY(1.0f, angles[i % angles.size()]));
    }
    const Points points = polar.points;
    const Points turned = plane.points;
    polar.toPolar();
    plane.toEvklid();
    for (qsizetype i = 0; i < points.size(); ++i) {
        ASSERT_EQ(exact(polar.points[i].y), exact(plainAngle(points[i].x, points[i].y))) << points[i].y;
        const double rad =
            static_cast<double>(static_cast<float>(static_cast<double>(turned[i].y) * 3.1415927410125732 / 180.0));
        ASSERT_EQ(exact(plane.points[i].x), exact(static_cast<float>(std::cos(rad)))) << turned[i].y;
        ASSERT_EQ(exact(plane.points[i].y), exact(static_cast<float>(std::sin(rad)))) << turned[i].y;
    }
}

TEST(Polar, AnglesAndBackAreWithinARoundingOfTheTruth) {
    forNasty(61, 20000, [](Nasty& nasty) {
        const KxPointXY p(nasty.plain(), nasty.plain());
        KxProfile profile = profileOf({p});
        profile.toPolar();
        const float radius = profile.points[0].x;
        const float angle = profile.points[0].y;
        double truth = std::atan2(static_cast<double>(p.y), static_cast<double>(p.x)) * 180.0 / M_PI;
        truth += truth < 0.0 ? 360.0 : 0.0;
        // A rounding of the quotient, of the arc tangent and of the sum, and pi as a float.
        ASSERT_NEAR(static_cast<double>(angle), truth, 4.0e-5) << p.x << ' ' << p.y;
        ASSERT_TRUE(angle >= 0.0f && angle <= 360.0f);
        profile.toEvklid();
        ASSERT_NEAR(profile.points[0].x, p.x, 2e-6f * radius);
        ASSERT_NEAR(profile.points[0].y, p.y, 2e-6f * radius);
    });
}

TEST(Polar, RotationTurnsCounterClockwiseAndKeepsTheCentre) {
    forNasty(62, 50, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        profile.rotatePolar(0.0f);
        profile.rotateEvklid(-0.0f);
        expectPoints(profile, points); // 0 touches no bit
        // About a centre the shifts are made all the same, and round.
        KxProfile fixed = profileOf(points);
        KxPointXY center(1e6f, 0.3f);
        fixed.rotateFixed(0.0f, center);
        profile.shift(-1e6f, -0.3f, 0.0f);
        profile.shift(1e6f, 0.3f, 0.0f);
        expectPoints(fixed, profile.points);
    });
    for (const float degrees : {0.5f, 90.0f, 123.4f, -47.0f, 360.0f, 1080.0f}) {
        const float rad = degrees * 3.1415927f / 180.0f;
        KxProfile profile = profileOf({{10, 20}, {110, 25}, {90, 140}});
        const Points before = profile.points;
        profile.rotateFixed(degrees, profile.points[2]); // a centre that is itself a point of the profile
        EXPECT_EQ(exact(profile.points[2]), exact(before[2])) << degrees;
        KxProfile turned = profileOf(before);
        turned.rotateEvklid(degrees);
        for (qsizetype i = 0; i < before.size(); ++i) {
            const KxPointXY p = before[i];
            const KxPointXY d(p.x - 90.0f, p.y - 140.0f);
            EXPECT_NEAR(profile.points[i].x, 90.0f + std::cos(rad) * d.x - std::sin(rad) * d.y, 1e-3f) << degrees;
            EXPECT_NEAR(profile.points[i].y, 140.0f + std::sin(rad) * d.x + std::cos(rad) * d.y, 1e-3f) << degrees;
            EXPECT_NEAR(turned.points[i].x, std::cos(rad) * p.x - std::sin(rad) * p.y, 1e-3f) << degrees;
            EXPECT_NEAR(turned.points[i].y, std::sin(rad) * p.x + std::cos(rad) * p.y, 1e-3f) << degrees;
        }
    }
}

} // namespace
