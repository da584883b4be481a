// The true measures of worn rims beside the wear that they were given.
#include "simulator/wornRim.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace kxsim;

TEST(WornRim, NewOnesHaveTheMeasuresOfTheStandard) {
    const RimTruth rim = trueMeasures(makeRimContour({}));
    EXPECT_NEAR(rim.height, 28.0, 0.001);
    EXPECT_NEAR(rim.thickness, 32.5, 0.001); // at 37.5 mm outside the tape circle of S1002
    EXPECT_NEAR(rim.hollow, 0.0, 0.001);
    EXPECT_NEAR(rim.width, kRimWidth, 1e-9);
    EXPECT_NEAR(rim.thicknessAt18, rim.thickness, 1e-6); // 10 mm above the tape circle are 18 mm below a tip of 28 mm
}

TEST(WornRim, WearChangesWhatItWears) {
    const RimTruth unworn = trueMeasures(makeRimContour({}));
    for (const double flange : {0.0, 1.5, 4.0}) {
        const RimTruth rim = trueMeasures(makeRimContour({flange, 0.0, 70.0, 20.0}));
        EXPECT_NEAR(rim.thickness, unworn.thickness - flange, 0.02) << flange;
        EXPECT_NEAR(rim.height, 28.0, 0.001) << flange;
        // Wear begins at the tip, 15 mm from the back face, and is whole from 30 mm on; 2 mm below the tip the flank is
        // 21.7 mm from the back face: 0.42 of the wear.
        EXPECT_NEAR(rim.flangeSlope, unworn.flangeSlope - (1.0 - 0.42) * flange, 0.01) << flange;
    }
    for (const auto& [tread, at] : {std::pair(2.0, 70.0), {3.5, 76.0}}) {
        const RimWear wear = {0.0, tread, at, 18.0};
        const RimTruth rim = trueMeasures(makeRimContour(wear));
        const double atTape = tread * std::exp(-std::pow((70.0 - at) / 18.0, 2));
        EXPECT_NEAR(rim.height, 28.0 + atTape, 0.001);
        EXPECT_GT(rim.hollow, 0.3 * tread);
        EXPECT_LT(rim.hollow, tread);
        EXPECT_NEAR(rim.treadSlope, unworn.treadSlope + 2.0 * (at - 70.0) / (18.0 * 18.0) * atTape, 0.002);
    }
}

TEST(WornRim, PointsAreSampledAsAsked) {
    const Contour contour = makeRimContour({2.0, 1.0, 68.0, 20.0});
    for (const bool isAlongX : {false, true}) {
        Random random({5, 1});
        const Contour points = sampled(contour, {0.4, 0.0, isAlongX}, random);
        const auto last = std::max_element(points.begin(), points.end(),
                                           [](const auto& a, const auto& b) { return a.axial < b.axial; });
        EXPECT_NEAR(last->axial, kRimWidth, 0.4);
        for (std::size_t i = 100; i < 200; ++i) { // on the tread, that is nearly even
            const double step = points[i].axial - points[i - 1].axial;
            EXPECT_NEAR(isAlongX ? step : std::hypot(step, points[i].radius - points[i - 1].radius), 0.4, 0.01);
        }
    }
}
