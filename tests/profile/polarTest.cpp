#include "profileSupport.h"

using namespace testing_support;

namespace {

TEST(Polar, FormOfSpecialPoints) {
    const float root2 = std::sqrt(2.0f);
    const std::pair<KxPointXY, KxPointXY> cases[] = {
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
    for (const auto& [point, polar] : cases) {
        SCOPED_TRACE(testing::Message() << point.x << ' ' << point.y);
        KxProfile profile = profileOf({point});
        profile.toPolar();
        expectPoints(profile, {polar});
    }
    KxProfile profile = profileOf({{2, 90}, {2, 180}, {kInf, 45}, {1, kInf}}); // the sine is that of the error of pi
    profile.toEvklid();
    expectPoints(profile, {{-4.371139e-08f * 2, 2}, {-2, -8.7422777e-08f * 2}, {kInf, kInf}, {kNaN, kNaN}});
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
    KxProfile polar, plane;
    for (std::size_t i = 0; i < quotients.size(); ++i) {
        polar.points.append(KxPointXY(i % 2 == 0 ? 1.0f : -1.0f, i % 3 == 0 ? -quotients[i] : quotients[i]));
        plane.points.append(KxPointXY(1.0f, angles[i % angles.size()]));
    }
    const Points points = polar.points, turned = plane.points;
    polar.toPolar();
    plane.toEvklid();
    for (qsizetype i = 0; i < points.size(); ++i) {
        ASSERT_EXACT(polar.points[i].y, plainAngle(points[i].x, points[i].y)) << points[i].y;
        const auto rad = static_cast<double>(at(static_cast<double>(turned[i].y) * 3.1415927410125732 / 180.0, 0).x);
        ASSERT_EXACT(plane.points[i], at(std::cos(rad), std::sin(rad))) << turned[i].y;
    }
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
        EXPECT_EXACT(profile.points[2], before[2]) << degrees;
        KxProfile turned = profileOf(before);
        turned.rotateEvklid(degrees);
        const auto expectTurned = [&](KxProfile& found, float x, float y) {
            for (qsizetype i = 0; i < before.size(); ++i) {
                const float dx = before[i].x - x, dy = before[i].y - y;
                EXPECT_NEAR(found.points[i].x, x + std::cos(rad) * dx - std::sin(rad) * dy, 1e-3f) << degrees;
                EXPECT_NEAR(found.points[i].y, y + std::sin(rad) * dx + std::cos(rad) * dy, 1e-3f) << degrees;
            }
        };
        expectTurned(profile, 90, 140);
        expectTurned(turned, 0, 0);
    }
}

} // namespace
