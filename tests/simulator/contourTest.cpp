#include "simulator/wheelContour.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kxsim;

TEST(WheelContour, S1002HasTheHeightsOfTheStandard) {
    const std::pair<double, double> heights[] = {{-55.0, 28.0}, {-70.0, 9.519259302}, {-37.5, 10.0},
                                                 {0.0, 0.0},    {60.0, -2.635676},    {65.0, -7.635676}};
    for (const auto& [y, height] : heights) {
        EXPECT_NEAR(s1002Height(y), height, 2e-5) << y;
    }
}

TEST(WheelContour, HasTheDimensionsOfTheWheel) {
    const double rim = 368.0;
    for (const double diameter : {860.0, 800.0}) {
        for (const double wear : {0.0, 4.0}) {
            const Contour contour = makeWheelContour({diameter, rim, wear});
            const auto [least, most] = std::minmax_element(
                contour.begin(), contour.end(), [](const auto& a, const auto& b) { return a.axial < b.axial; });
            EXPECT_TRUE(least->axial == 0.0 && most->axial == kRimWidth);
            const auto tip = std::max_element(contour.begin(), contour.end(),
                                              [](const auto& a, const auto& b) { return a.radius < b.radius; });
            EXPECT_NEAR(tip->radius, diameter / 2.0 + 28.0, 0.002);
            EXPECT_NEAR(flangeThickness(contour, diameter), 32.5 - wear, 0.05) << diameter << " " << wear;

            // The flat of the back face: one segment from the rim to the foot of the flange.
            const auto foot = std::find_if(contour.begin(), contour.end(), [&](const ContourPoint& p) {
                return p.axial == 0.0 && p.radius > rim + 1.0;
            });
            ASSERT_NE(foot, contour.end());
            EXPECT_NEAR(foot->radius, diameter / 2.0 + 9.519, 0.001);
            EXPECT_TRUE((foot - 1)->axial == 0.0 && (foot - 1)->radius == rim);
        }
    }
}
