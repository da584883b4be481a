// The poses of the sensors and the lines of an ideal calibration.
#include "simulator/calibration.h"

#include "simulator/wheelContour.h"

namespace kxsim {

Pose makePose(const Parameters& p, int sensor) {
    const double turn = sensor == 1 ? p.turn1 : -p.turn2; // the mirror image turns the other way
    Pose pose{{0.0, 0.0, 0.0}, p.alpha, p.beta + turn, p.gamma};
    // The axis meets the nominal back face at the aim height.
    const Vec3 target = {0.0, p.backToBack / 2.0, p.aimHeight};
    pose.origin = target - p.standOff * pose.v();
    pose.origin.x = sensor == 1 ? p.along1 : p.along2;
    return sensor == 1 ? pose : pose.mirrored();
}

CalibratedLines calibrate(const Parameters& p, int sensor) {
    const Pose pose = makePose(p, sensor);
    const auto behindFace = [&](double distance) {
        return traceOfPlane(pose, sideOf(sensor) * (p.backToBack / 2.0 + distance));
    };
    constexpr double kLowMargin = 40.0; // mm, as the two below
    constexpr double kFlangeEnd = 40.0;
    constexpr double kBehindWheel = 20.0;
    return {behindFace(0.0), behindFace(p.levelMargin), behindFace(-kLowMargin), behindFace(kRimWidth + kBehindWheel),
            behindFace(kFlangeEnd)};
}

} // namespace kxsim
