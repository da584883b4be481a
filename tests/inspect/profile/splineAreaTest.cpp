#include <KxInspect/KxMathTypes.h>
#include <KxInspect/SplineArea.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace KxInspect;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// Points of y = f(x), unevenly spaced from -3 to 7.
template <typename F>
Profile profileOf(F f) {
    Profile profile;
    for (float x = -3.0f; x < 7.0f; x += 0.11f + 0.05f * std::sin(5.0f * x)) {
        profile.points.push_back({x, static_cast<float>(f(static_cast<double>(x)))});
    }
    profile.points.push_back({7.0f, static_cast<float>(f(7.0))});
    return profile;
}

TEST(SplineArea, OfAParabolaIsItsIntegral) {
    const auto y = [](double x) { return 2.0 + 0.5 * x - 0.25 * x * x; };
    const auto integral = [](double x) { return 2.0 * x + 0.25 * x * x - x * x * x / 12.0; };
    const Profile profile = profileOf(y);
    const struct {
        float from, to;
        double first, last;
    } cases[] = {{-kInfinity, kInfinity, -3.0, 7.0},
                 {-9.0f, 9.0f, -3.0, 7.0},
                 {0.5f, 0.51f, 0.5, 0.51},
                 {-1.25f, 3.5f, -1.25, 3.5},
                 {7.0f, 8.0f, 7.0, 7.0},
                 {4.0f, 2.0f, 0.0, 0.0},
                 {11.0f, 12.0f, 0.0, 0.0}};
    for (const auto& c : cases) {
        const std::optional<double> area = splineArea(profile, c.from, c.to);
        ASSERT_TRUE(area) << c.from;
        // Akima's slopes are those of a parabola only where the points are evenly spaced.
        EXPECT_NEAR(*area, integral(c.last) - integral(c.first), 2e-4) << c.from << " to " << c.to;
    }
}

TEST(SplineArea, IsThatOfTheTrapezoidsAlongTheSpline) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> noise(-0.2f, 0.2f);
    Profile profile = profileOf([&](double x) { return std::sin(x) + static_cast<double>(noise(random)); });
    const int last = static_cast<int>(profile.points.size()) - 1;
    KxMath::KxProfile same = toKxProfile(profile);
    const double expected = static_cast<double>(same.integral(0, last, false));
    EXPECT_NEAR(*splineArea(profile), expected, 0.005);
    const double parts = *splineArea(profile, -kInfinity, 1.3f) + *splineArea(profile, 1.3f);
    EXPECT_NEAR(parts, *splineArea(profile), 1e-9);

    // Neither the order of points nor missing ones nor further points of one x change it.
    const double area = *splineArea(profile);
    profile.points.push_back({profile.points[4].x, 99.0f});
    std::shuffle(profile.points.begin(), profile.points.begin() + last, random);
    profile.points.insert(profile.points.begin() + 7, {kNaN, 3.0f});
    profile.points.insert(profile.points.begin() + 2, {0.123f, kNaN});
    EXPECT_EQ(*splineArea(profile), area);
}

TEST(SplineArea, NeedsACurve) {
    const Profile three{{{0.0f, 1.0f}, {2.0f, 1.0f}, {1.0f, 1.0f}}, kNaN};
    EXPECT_EQ(splineArea(three), 2.0);
    const struct {
        const char* what;
        Profile profile;
        float from;
    } cases[] = {
        {"two x", {{{0.0f, 1.0f}, {1.0f, 1.0f}, {1.0f, 2.0f}}, kNaN}, -kInfinity},
        {"no points", {}, -kInfinity},
        {"a bound that is NaN", three, kNaN},
        {"an infinite height", {{{0.0f, 1.0f}, {1.0f, kInfinity}, {2.0f, 1.0f}, {3.0f, 1.0f}}, kNaN}, -kInfinity},
        {"an infinite x", {{{0.0f, 1.0f}, {1.0f, 2.0f}, {kInfinity, 1.0f}}, kNaN}, -kInfinity},
        {"too steep", {{{0.0f, 0.0f}, {1e-30f, 1e30f}, {2e-30f, 0.0f}, {1.0f, 0.0f}}, kNaN}, -kInfinity}};
    for (const auto& c : cases) {
        EXPECT_FALSE(splineArea(c.profile, c.from)) << c.what;
    }
}

} // namespace
