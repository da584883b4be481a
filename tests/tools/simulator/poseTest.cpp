#include "simulator/pose.h"
#include "simulator/calibration.h"
#include "simulator/random.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace kxsim;

namespace {

void expectNear(const Vec3& a, const Vec3& b, const char* desc) {
    EXPECT_NEAR(a.x, b.x, 1e-9) << desc;
    EXPECT_NEAR(a.y, b.y, 1e-9) << desc;
    EXPECT_NEAR(a.z, b.z, 1e-9) << desc;
}

} // namespace

TEST(Pose, TurnsAsASensorCoordinateRecord) {
    const Vec3 o = {1, 2, 3};
    const double s = 0.5;
    const double c = std::sqrt(0.75);
    expectNear(Pose{o, 0, 0, 0}.toTrack(10, 100), {101, 2, 13}, "no angles: away along X, the line along Z");
    expectNear(Pose{o, 0, 90, 180}.toTrack(10, 100), {1, 102, -7}, "across the track, the line downwards");
    expectNear(Pose{o, 0, -90, -180}.toTrack(10, 100), {1, -98, -7}, "the sensor opposite");
    expectNear(Pose{o, -30, 90, 180}.toTrack(10, 100), {1, 2 + 100 * c + 10 * s, 3 + 100 * s - 10 * c}, "looking up");
    expectNear(Pose{o, 0, 90, 90}.toTrack(10, 100), {11, 102, 3}, "the line along the track");
}

TEST(Pose, MirrorsAcrossTheTrack) {
    Random random({3});
    for (int i = 0; i < 20; ++i) {
        const Pose pose = {{random.uniform(-9, 9), random.uniform(-9, 9), random.uniform(-9, 9)},
                           random.uniform(-80, 80),
                           random.uniform(10, 170),
                           random.uniform(-180, 180)};
        const Vec3 p = pose.toTrack(3, 50);
        expectNear(pose.mirrored().toTrack(3, 50), {p.x, -p.y, p.z}, "mirrored");
        const SensorLine trace = traceOfPlane(pose, 123.0);
        EXPECT_NEAR(pose.toTrack(-20, trace.at(-20)).y, 123.0, 1e-9);
        EXPECT_NEAR(pose.toTrack(30, trace.at(30)).y, 123.0, 1e-9);
    }
}

TEST(Calibration, LinesStandWhereTheyShould) {
    const Parameters p;
    for (const int sensor : {1, 2}) {
        const Pose pose = makePose(p, sensor);
        const CalibratedLines lines = calibrate(p, sensor);
        EXPECT_NEAR(pose.toTrack(0, p.standOff).z, p.aimHeight, 1e-9);
        EXPECT_NEAR(lines.reference.b, p.standOff, 1e-9);
        for (const auto& [line, distance] : {std::pair{lines.reference, 0.0}, {lines.level, p.levelMargin}}) {
            EXPECT_NEAR(pose.toTrack(7, line.at(7)).y, sideOf(sensor) * (p.backToBack / 2.0 + distance), 1e-9);
        }
    }
}
