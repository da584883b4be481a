// The poses of the sensors and the lines of an ideal calibration.
#include "simulator/calibration.h"

#include "simulator/wheelContour.h"

namespace kxsim {

namespace {

/// What the layout says of a sensor; null without a layout.
const LayoutSensor* inLayout(const Parameters& p, int sensor) {
    return p.layout.empty() ? nullptr : &p.layout[static_cast<std::size_t>(sensor - 1)];
}

/// The pose of a sensor outside of the left rail that looks over its head, inwards and up at the tread and the front of the
/// flange: the lowest ray of the usual fan passes 7 mm above the edge of the rail. Wheels are in view while the laser cuts
/// them along a chord 200 to 330 mm from the axle.
Pose fieldPose(const Parameters& p) {
    constexpr double kAimHeight = 70.0; // mm, of the tape circle
    constexpr double kDistance = 260.0; // mm from there
    Pose pose{{0.0, 0.0, 0.0}, -25.5, -90.0, 180.0};
    pose.origin = Vec3{0.0, p.backToBack / 2.0 + kTapeCircle, kAimHeight} - kDistance * pose.v();
    return pose;
}

/// The usual pose of the first sensor.
Pose innerPose(const Parameters& p, double turn) {
    Pose pose{{0.0, 0.0, 0.0}, p.alpha, p.beta + turn, p.gamma};
    // The axis meets the nominal back face at the aim height.
    const Vec3 target = {0.0, p.backToBack / 2.0, p.aimHeight};
    pose.origin = target - p.standOff * pose.v();
    return pose;
}

Pose poseInLayout(const Parameters& p, const LayoutSensor& sensor) {
    if (sensor.pose) {
        return *sensor.pose;
    }
    Pose pose = sensor.place == SensorPlace::Inner ? innerPose(p, 0.0) : fieldPose(p);
    pose.origin.x = sensor.along;
    return sensor.isLeft ? pose : pose.mirrored();
}

} // namespace

int sideOf(const Parameters& p, int sensor) {
    const LayoutSensor* const given = inLayout(p, sensor);
    return (given != nullptr ? given->isLeft : sensor == 1) ? 1 : -1;
}

SensorPlace placeOf(const Parameters& p, int sensor) {
    const LayoutSensor* const given = inLayout(p, sensor);
    return given != nullptr ? given->place : SensorPlace::Inner;
}

Pose makePose(const Parameters& p, int sensor) {
    if (const LayoutSensor* const given = inLayout(p, sensor)) {
        return poseInLayout(p, *given);
    }
    const double turn = sensor == 1 ? p.turn1 : -p.turn2; // the mirror image turns the other way
    Pose pose = innerPose(p, turn);
    pose.origin.x = sensor == 1 ? p.along1 : p.along2;
    return sensor == 1 ? pose : pose.mirrored();
}

CalibratedLines calibrate(const Parameters& p, int sensor) {
    const Pose pose = makePose(p, sensor);
    const auto behindFace = [&](double distance) {
        return traceOfPlane(pose, sideOf(p, sensor) * (p.backToBack / 2.0 + distance));
    };
    constexpr double kLowMargin = 40.0; // mm, as the two below
    constexpr double kFlangeEnd = 40.0;
    constexpr double kBehindWheel = 20.0;
    if (placeOf(p, sensor) == SensorPlace::Field) {
        // Before the level line is the outer part of the rim, which is in view longest; defects lie beyond it.
        constexpr double kRim = 100.0;
        return {behindFace(0.0), behindFace(kRim), behindFace(kRimWidth + kLowMargin), behindFace(kFlangeEnd),
                behindFace(kRimWidth + kBehindWheel)};
    }
    return {behindFace(0.0), behindFace(p.levelMargin), behindFace(-kLowMargin), behindFace(kRimWidth + kBehindWheel),
            behindFace(kFlangeEnd)};
}

} // namespace kxsim
