// Sections that are no functions of x, rails at their gauge depth, points on straight lines.
#include "inspect/fitting/lookUp.h"

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

TEST(RunningSurface, IsTheOuterSideOfTheContour) {
    // Measured from the outside in, with a face that leans back under x = 1.5 and a shadow behind 3.
    const std::vector<Point> points = {{5.0f, 2.0f}, {4.0f, 3.0f}, {3.0f, 5.0f}, {3.4f, 7.0f},
                                       {2.0f, 4.0f}, {1.0f, 6.0f}, {1.5f, 9.0f}};
    const struct {
        SectionKind kind;
        int hidden;
        std::vector<Point> at; // places on the contour, and its outer side there
    } cases[] = {{SectionKind::Wheel, 1, {{1.0f, 6.0f}, {1.4f, 8.4f}, {1.6f, 4.8f}, {2.7f, 5.5f}, {3.5f, 4.0f}}},
                 {SectionKind::Rail, 2, {{1.0f, 6.0f}, {1.5f, 5.0f}, {2.0f, 4.0f}, {3.1f, 4.8f}, {4.5f, 2.5f}}}};
    for (const auto& [kind, hidden, at] : cases) {
        Profile section{points};
        EXPECT_EQ(keepRunningSurface(section, kind), hidden);
        ASSERT_EQ(section.points.size(), 42u); // every 0.1 mm; accumulated, the 41st is just before 5
        EXPECT_EQ(section.points.back(), points.front());
        for (const Point& p : at) {
            EXPECT_NEAR(detail::valueAt(section.points, static_cast<double>(p.x)), p.y, 1e-4) << p.x;
        }
        const std::vector<Point> once = section.points;
        EXPECT_EQ(keepRunningSurface(section, kind), 0);
        EXPECT_EQ(section.points, once);
    }
}

TEST(RunningSurface, MissingPointsAreDropped) {
    Profile profile{{{0.0f, kNaN}, {1.0f, 2.0f}, {kNaN, 3.0f}, {2.0f, 5.0f}}};
    EXPECT_EQ(dropMissing(profile), 2);
    EXPECT_EQ(profile.points, (std::vector<Point>{{1.0f, 2.0f}, {2.0f, 5.0f}}));
    EXPECT_EQ(dropMissing(profile), 0);
}

TEST(RunningSurface, RailsAreCutOnTheirGaugeSide) {
    constexpr float kRadius = 40.0f;
    for (const float depth : {0.7f, 2.0f, 5.3f}) { // 5.359 mm at -20
        Profile rail = arc(kRadius);
        ASSERT_TRUE(cutAtGaugeDepth(rail, depth));
        const float x = -std::sqrt(kRadius * kRadius - (kRadius - depth) * (kRadius - depth));
        EXPECT_NEAR(rail.points.front().x, x, 1e-3f) << depth;
        EXPECT_NEAR(rail.points.front().y, depth, 1e-5f);
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

TEST(RunningSurface, OfARailBeginsAtTheSmallestXAboveTheGaugeDepth) {
    // The face bulges to x = -1 at 8 mm and leans back to 2 at 20 mm.
    const std::vector<Point> points = {{2.0f, 20.0f}, {kNaN, 9.0f}, {-1.0f, 8.0f},
                                       {1.0f, 2.0f},  {9.0f, 0.0f}, {20.0f, 1.0f}};
    for (const auto& [depth, first] : {std::pair{14.0f, Point{-1.0f, 8.0f}}, {5.0f, Point{0.0f, 5.0f}}}) {
        Profile rail{points};
        ASSERT_TRUE(cutAtGaugeDepth(rail, depth));
        keepRunningSurface(rail, SectionKind::Rail);
        EXPECT_EQ(rail.points.front(), first) << depth;
        EXPECT_EQ(rail.points.back(), points.back());
    }
}

TEST(RunningSurface, OfSectionsThatAreTooWideOrTooFarStaysAsItIs) {
    for (const float to : {1001.0f, 1e8f}) {
        Profile wide{{{0.0f, 1.0f}, {to, 2.0f}, {to - 0.5f, 3.0f}}};
        EXPECT_EQ(keepRunningSurface(wide, SectionKind::Rail), 0);
        EXPECT_EQ(wide.points.size(), 3u) << to;
    }
    Profile far{{{1e7f, 1.0f}, {1e7f + 4.0f, 2.0f}, {1e7f + 2.0f, 2.0f}}}; // floats there are 1 apart
    EXPECT_EQ(keepRunningSurface(far, SectionKind::Wheel), 0);
    EXPECT_EQ(far.points.size(), 3u);
    Profile wild; // there and back again
    for (int i = 0; i < 200; ++i) {
        wild.points.push_back({i % 2 == 0 ? 0.0f : 10.0f, static_cast<float>(i) * 0.01f});
    }
    EXPECT_EQ(keepRunningSurface(wild, SectionKind::Wheel), std::nullopt);
    EXPECT_EQ(wild.points.size(), 200u);
}

TEST(Orientation, TurnsAxesAndOrder) {
    Profile profile{{{1.0f, 2.0f}, {3.0f, 5.0f}}};
    orient(profile, {true, false});
    EXPECT_EQ(profile.points, (std::vector<Point>{{1.0f, -2.0f}, {3.0f, -5.0f}}));
    orient(profile, {false, true});
    EXPECT_EQ(profile.points, (std::vector<Point>{{-3.0f, -5.0f}, {-1.0f, -2.0f}}));
}
