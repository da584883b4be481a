// Rays on whole wheels and on rails.
#include "simulator/bodies.h"
#include "simulator/random.h"
#include "simulator/wheel.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace kxsim;

namespace {

constexpr double kEnd = 1e4;

/// True inside the cross-section, closed along the axle.
bool isInside(const Contour& contour, double axial, double radius) {
    bool isIn = false;
    const std::size_t n = contour.size();
    for (std::size_t i = 0; i < n + 2; ++i) {
        const auto corner = [&](std::size_t k) -> ContourPoint {
            if (k < n) {
                return contour[k];
            }
            return k == n ? ContourPoint{contour.back().axial, 0.0} : ContourPoint{contour.front().axial, 0.0};
        };
        const ContourPoint a = corner(i);
        const ContourPoint b = corner((i + 1) % (n + 2));
        if ((a.radius > radius) != (b.radius > radius) &&
            axial < a.axial + (radius - a.radius) * (b.axial - a.axial) / (b.radius - a.radius)) {
            isIn = !isIn;
        }
    }
    return isIn;
}

} // namespace

TEST(Rays, MeetAWheelWhereTheyFirstEnterIt) {
    const Wheel wheel({860.0, 368.0, 2.0}, -1, 680.0);
    Random random({7});
    int hits = 0;
    for (int i = 0; i < 400; ++i) {
        const Vec3 origin = {random.uniform(-500, 500), -random.uniform(300, 1200), random.uniform(-200, 300)};
        const Vec3 target = {random.uniform(-450, 450), -random.uniform(670, 830), random.uniform(-30, 500)};
        const Ray ray = {origin, target - origin};
        const auto radiusAt = [&](double t) { return std::hypot(ray.at(t).x - 10.0, ray.at(t).z - 430.0); };
        const auto isInWheel = [&](double t) { return isInside(wheel.contour, -ray.at(t).y - 680.0, radiusAt(t)); };
        bool isThroughHub = false; // where the contour is open; no ray of a sensor gets there
        for (double t = 0.0; t < 2.0; t += 2e-3) {
            isThroughHub = isThroughHub || radiusAt(t) < 110.0;
        }
        if (isThroughHub || isInWheel(0.0)) {
            continue;
        }
        const double hit = wheel.hit(ray, 10.0, 2.0);
        for (double t = 0.0; t < hit; t += 2e-3) {
            ASSERT_FALSE(isInWheel(t)) << "ray " << i << " passes a hit at " << t;
        }
        if (hit < 2.0) {
            ++hits;
            EXPECT_NE(isInWheel(hit - 1e-7), isInWheel(hit + 1e-7)) << "ray " << i << " stops at no surface";
        }
    }
    EXPECT_GT(hits, 150);
}

TEST(Rays, MeetTheRailOnItsInnerSideAndTop) {
    for (const int side : {1, -1}) {
        const TrackBody rail = makeRailHead(1435.0, side);
        EXPECT_NEAR(hitTrackBody(rail, {{5, side * 600.0, -20}, {1, side * 1.0, 0}}, kEnd), 117.5, 1e-9);
        EXPECT_NEAR(hitTrackBody(rail, {{5, side * 750.0, 100}, {0, 0, -1}}, kEnd), 100.0, 1e-9);
        EXPECT_EQ(hitTrackBody(rail, {{5, side * 600.0, 1}, {0, side * 1.0, 0}}, kEnd), kEnd);
    }
}
