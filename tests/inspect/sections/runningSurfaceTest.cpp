// Sections that are no functions of x, rails at their gauge depth, points on straight lines.
#include <KxInspect/CrossSection.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace KxInspect;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// An arc with its top at (0, 0), y down, from -20 to 30.
Profile arc(float radius) {
    Profile profile;
    for (int i = -200; i <= 300; ++i) {
        const float x = 0.1f * static_cast<float>(i);
        profile.points.push_back({x, radius - std::sqrt(radius * radius - x * x)});
    }
    return profile;
}

} // namespace

TEST(RunningSurface, IsTheSideThatCanTouch) {
    // Measured from the outside in, with a face that stands upright at x = 1 and a shadow behind 3.
    const std::vector<Point> points = {{5.0f, 2.0f}, {4.0f, 3.0f}, {3.0f, 5.0f}, {3.05f, 7.0f},
                                       {2.0f, 4.0f}, {kNaN, 1.0f}, {1.0f, 6.0f}, {1.0f, 9.0f}};
    Profile wheel{points};
    EXPECT_EQ(keepRunningSurface(wheel, SectionKind::Wheel), 3);
    EXPECT_EQ(wheel.points, (std::vector<Point>{{1.0f, 9.0f}, {2.0f, 4.0f}, {3.0f, 7.0f}, {4.0f, 3.0f}, {5.0f, 2.0f}}));
    Profile rail{points};
    EXPECT_EQ(keepRunningSurface(rail, SectionKind::Rail), 3);
    EXPECT_EQ(rail.points, (std::vector<Point>{{1.0f, 6.0f}, {2.0f, 4.0f}, {3.0f, 5.0f}, {4.0f, 3.0f}, {5.0f, 2.0f}}));
    const std::vector<Point> once = wheel.points;
    EXPECT_EQ(keepRunningSurface(wheel, SectionKind::Wheel), 0);
    EXPECT_EQ(wheel.points, once);
}

TEST(RunningSurface, RailsAreCutOnTheirGaugeSide) {
    constexpr float kRadius = 40.0f;
    for (const float depth : {0.7f, 2.0f, 5.3f}) { // 5.359 mm at -20
        Profile rail = arc(kRadius);
        ASSERT_TRUE(cutAtGaugeDepth(rail, depth));
        const float x = -std::sqrt(kRadius * kRadius - (kRadius - depth) * (kRadius - depth));
        EXPECT_NEAR(rail.points.front().x, x, 1e-3f) << depth;
        EXPECT_EQ(rail.points.front().y, depth);
        EXPECT_EQ(rail.points.back(), arc(kRadius).points.back());
        EXPECT_EQ(rail.points.size(), static_cast<std::size_t>(300.0f - std::ceil(x * 10.0f) + 2.0f)) << depth;
    }
    for (const auto& [depth, isReached] : {std::pair{0.0f, true}, {6.0f, false}, {kNaN, true}}) {
        Profile rail = arc(kRadius);
        EXPECT_EQ(cutAtGaugeDepth(rail, depth), isReached) << depth;
        EXPECT_EQ(rail.points.size(), 501u);
    }
    Profile rising{{{0.0f, 1.0f}, {1.0f, 2.0f}, {2.0f, 3.0f}}}; // its top is its end
    EXPECT_FALSE(cutAtGaugeDepth(rising, 1.5f));
}

TEST(RunningSurface, IsStraightenedBetweenItsPoints) {
    Profile section{{{-1.5f, 2.0f}, {0.25f, 9.0f}, {0.31f, 3.0f}, {2.0f, 3.5f}}};
    straighten(section);
    ASSERT_EQ(section.points.size(), 36u);
    EXPECT_EQ(section.points.front(), (Point{-1.5f, 2.0f}));
    EXPECT_EQ(section.points.back(), (Point{2.0f, 3.5f}));
    EXPECT_NEAR(section.points[10].y, 2.0f + 4.0f * 1.0f, 1e-5f); // at -0.5
    EXPECT_NEAR(section.points[23].y, 3.0f + 0.49f * 0.5f / 1.69f, 1e-5f); // at 0.8
    for (const float to : {1001.0f, 1e8f, kNaN}) {
        Profile wide{{{0.0f, 1.0f}, {to, 2.0f}}};
        straighten(wide);
        EXPECT_EQ(wide.points.size(), 2u) << to;
    }
    Profile far{{{1e7f, 1.0f}, {1e7f + 4.0f, 2.0f}}}; // floats there are 1 apart
    straighten(far);
    EXPECT_EQ(far.points.size(), 2u);
}

TEST(Orientation, TurnsAxesAndOrder) {
    Profile profile{{{1.0f, 2.0f}, {3.0f, 5.0f}}};
    orient(profile, {true, false});
    EXPECT_EQ(profile.points, (std::vector<Point>{{1.0f, -2.0f}, {3.0f, -5.0f}}));
    orient(profile, {false, true});
    EXPECT_EQ(profile.points, (std::vector<Point>{{-3.0f, -5.0f}, {-1.0f, -2.0f}}));
}
