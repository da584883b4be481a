// Points of a profile in the directions of the track, compared with the points of the laser plane themselves.
#include "inspect/train/laserPlane.h"
#include "support/testing.h"

#include <numbers>

namespace {

using namespace testing_support;
using namespace KxInspect::detail;
using KxInspect::SensorAngles;
using KxInspect::SensorSettings;

struct InTrack {
    double along, left, up;
};

/// Where a sensor sees a point, from its origin: docs/calibration.md.
InTrack inTrack(const SensorAngles& pose, double x, double y) {
    const auto sine = [](double degrees) { return std::sin(degrees * std::numbers::pi / 180.0); };
    const auto cosine = [](double degrees) { return std::cos(degrees * std::numbers::pi / 180.0); };
    const double sa = sine(pose.alpha), ca = cosine(pose.alpha), sb = sine(pose.beta), cb = cosine(pose.beta);
    const double sc = sine(pose.gamma), cc = cosine(pose.gamma);
    return {x * (sa * cb * cc + sb * sc) + y * ca * cb, x * (sa * sb * cc - sc * cb) + y * ca * sb,
            x * ca * cc - y * sa};
}

SensorSettings sensorWith(const SensorAngles& pose, double offSlope = 0.0) {
    const double slope = -inTrack(pose, 1.0, 0.0).left / inTrack(pose, 0.0, 1.0).left;
    SensorSettings sensor;
    sensor.angles = pose;
    sensor.reference = KxInspect::Line{static_cast<float>(slope + offSlope), 140.0f};
    return sensor;
}

TEST(LaserPlane, TurnsSectionsIntoTheTrack) {
    const SensorAngles poses[] = {{-40.0, 90.0, 180.0},  {-40.0, 105.0, 180.0}, {-35.0, -103.0, -180.0},
                                  {-40.0, 82.0, 171.0},  {-40.0, 95.0, 6.0},    {20.0, -75.0, 184.0},
                                  {-55.0, 90.0, -173.0}, {0.0, 100.0, 180.0}};
    for (const SensorAngles& pose : poses) {
        SCOPED_TRACE(testing::Message() << pose.alpha << " " << pose.beta << " " << pose.gamma);
        const SensorSettings sensor = sensorWith(pose);
        const LaserPlane plane = laserPlaneOf(sensor);
        ASSERT_TRUE(plane.isKnown);
        const double slope = static_cast<double>(sensor.reference->slope);
        const double towardsRail = inTrack(pose, 1.0, slope).up < 0.0 ? 1.0 : -1.0;
        const double outwards = inTrack(pose, 0.0, 1.0).left > 0.0 ? 1.0 : -1.0;
        const InTrack origin = inTrack(pose, 0.0, 140.0); // on the reference line
        for (const auto& [x, y] : {std::pair{0.0, 140.0}, {35.0, 110.0}, {-20.0, 230.0}}) {
            const InTrack truth = inTrack(pose, x, y);
            const KxLine reference(sensor.reference->slope, sensor.reference->intercept);
            const SectionPoint p = plane.inTrack(sectionOf({at(x, y)}, reference, towardsRail).front());
            EXPECT_NEAR(p.across, outwards * (truth.left - origin.left), 1e-4);
            const SectionPoint first = plane.inTrack(sectionOf({at(0.0, 140.0)}, reference, towardsRail).front());
            EXPECT_NEAR(p.down - first.down, origin.up - truth.up, 1e-4);
            EXPECT_NEAR(plane.skew * (p.across - first.across) + plane.shear * (p.down - first.down),
                        truth.along - origin.along, 1e-4);
        }
    }
}

TEST(LaserPlane, IsStraightAcrossWithoutAPoseThatFits) {
    const SensorAngles pose = {-40.0, 105.0, 180.0};
    SensorSettings noAngles = sensorWith(pose), noReference = noAngles;
    noAngles.angles.reset();
    noReference.reference.reset();
    const double nan = std::nan("");
    for (const SensorSettings& sensor : {noAngles, noReference, sensorWith(pose, 0.25), sensorWith(pose, -0.25),
                                         sensorWith({-40.0, 3.0, 180.0}), sensorWith({nan, 90.0, 180.0})}) {
        const LaserPlane plane = laserPlaneOf(sensor);
        EXPECT_FALSE(plane.isKnown);
        EXPECT_EQ(plane.skew, 0.0);
        EXPECT_EQ(plane.shear, 0.0);
        EXPECT_EQ(plane.acrossPerAcross, 1.0);
    }
    EXPECT_TRUE(laserPlaneOf(sensorWith(pose, 0.05)).isKnown);
}

} // namespace
