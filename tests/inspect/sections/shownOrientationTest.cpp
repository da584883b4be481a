// The orientation that the shape of a wheel or a rail shows.
#include "inspect/sections/shownOrientation.h"
#include "simulator/wheelContour.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace KxInspect;
using detail::shownByRail;
using detail::shownByWheel;

namespace {

using Contour = std::vector<Point>;

/// S1002 with back and front face; the back face reaches `back` mm above the tape circle, the front face `front` mm.
Contour wheel(float back, float front) {
    Contour points;
    for (float y = -back; y < 9.5f; y += 0.3f) {
        points.push_back({0.0f, y});
    }
    for (int i = 0; i <= 540; ++i) {
        const double x = 0.25 * i;
        points.push_back({static_cast<float>(x), static_cast<float>(kxsim::s1002Height(x - kxsim::kTapeCircle))});
    }
    for (float y = -8.0f; y > -front; y -= 0.3f) {
        points.push_back({135.0f, y});
    }
    return points;
}

/// A head of 70 mm whose gauge side is `inner` mm deep and whose other side is `outer` mm deep and hangs over by `lip` mm,
/// inclined.
Contour rail(float inner, float outer, float inclination, float lip = 0.0f) {
    Contour points;
    for (float y = inner; y > 10.0f; y -= 0.4f) {
        points.push_back({0.0f, y});
    }
    for (float x = 0.0f; x <= 70.0f; x += 0.3f) {
        points.push_back({x, std::pow((x - 35.0f) / 35.0f, 4.0f) * 10.0f - inclination * x});
    }
    const float edge = points.back().y;
    for (float y = edge; y < outer; y += 0.4f) {
        points.push_back({70.0f - lip * (y - edge) / (outer - edge), y});
    }
    return points;
}

Contour turned(Contour points, bool isUp, bool isMirrored) {
    for (Point& p : points) {
        p = {isMirrored ? -p.x : p.x, isUp ? -p.y : p.y};
    }
    return points;
}

} // namespace

TEST(ShownOrientation, OfWheels) {
    for (const auto& [back, front] : {std::pair{-4.0f, 0.0f}, {22.0f, 22.3f}, {30.0f, 9.0f}, {3.0f, 40.0f}}) {
        for (const auto& [isUp, isMirrored] : {std::pair{false, false}, {false, true}, {true, false}, {true, true}}) {
            const auto shown = shownByWheel(turned(wheel(back, front), isUp, isMirrored));
            EXPECT_TRUE(shown.isRecognised) << back << " " << front;
            EXPECT_EQ(shown.orientation.isUp, isUp) << back << " " << front << isMirrored;
            EXPECT_EQ(shown.orientation.isMirrored, isMirrored) << back << " " << front << isUp;
        }
    }
    EXPECT_FALSE(shownByWheel(rail(20.0f, 12.0f, 0.0f)).isRecognised);
    EXPECT_FALSE(shownByWheel({}).isRecognised);
}

TEST(ShownOrientation, OfRails) {
    constexpr float kDepth = 14.0f;
    const struct {
        float inner, outer, inclination, lip;
        bool hasGaugeSide, isEven;
    } cases[] = {
        {20.0f, 11.0f, 0.0f, 0.0f, true, true},     {30.0f, 32.0f, 0.025f, 0.0f, true, false},
        {30.0f, 32.0f, 0.025f, 4.0f, true, false},  {30.0f, 30.0f, 0.0f, 0.0f, false, true},
        {30.0f, 30.0f, 0.006f, 0.0f, false, false}, {9.0f, 9.0f, 0.0f, 0.0f, false, true}, // the sides are not seen
        {9.0f, 9.0f, 0.006f, 0.0f, false, false}};
    for (const auto& c : cases) {
        for (const auto& [isUp, isMirrored] : {std::pair{false, false}, {false, true}, {true, false}, {true, true}}) {
            const auto shown =
                shownByRail(turned(rail(c.inner, c.outer, c.inclination, c.lip), isUp, isMirrored), kDepth);
            EXPECT_EQ(shown.isEven, c.isEven) << c.inner << " " << c.inclination;
            EXPECT_TRUE(shown.isRecognised);
            EXPECT_EQ(shown.orientation.isUp, isUp) << c.inner << " " << c.outer;
            EXPECT_EQ(shown.orientation.isMirrored, c.hasGaugeSide ? std::optional(isMirrored) : std::nullopt)
                << c.inner << " " << c.outer << " " << isUp;
        }
    }
    EXPECT_FALSE(shownByRail({{0.0f, 1.0f}, {30.0f, 1.1f}, {60.0f, 1.0f}}, kDepth).isRecognised);
    EXPECT_FALSE(shownByRail({}, kDepth).isRecognised);
}
