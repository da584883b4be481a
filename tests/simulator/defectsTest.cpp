// Defects of the tread: nothing else changes, and they have the depth that they should have.
#include "simulator/passSupport.h"

#include "simulator/calibration.h"
#include "simulator/wheel.h"
#include "simulator/wheelContour.h"

using namespace simulator_test;
using kxsim::Defect;
using kxsim::Parameters;

namespace {

Parameters undisturbed() {
    Parameters p = quickPass(1);
    p.noise = p.quantum = p.missing = p.spikes = p.flangeWear = p.lateralSpread = p.distanceSpread = p.wear = 0.0;
    return p;
}

/// What a defect changes: how many profiles, and the radius of the wheel near its tape circle.
struct Change {
    int profiles = 0;
    double radius = 0.0; ///< the median of all points, positive for added metal
};

Change changeOf(const Parameters& p, const Defect& defect) {
    Parameters changed = p;
    changed.defects.push_back(defect);
    const Pass plain(p);
    const Pass pass(changed);
    const kxsim::Pose pose = kxsim::makePose(p, 1);
    const auto before = plain.profiles(1);
    const auto after = pass.profiles(1);
    EXPECT_EQ(before.size(), after.size());
    const double behind = pass.pairs()[defect.pair - 1].toObject()["behindFirst"].toDouble();
    Change change;
    std::vector<double> radii;
    for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
        bool isChanged = false;
        const qsizetype n = std::min(before[i].points.size(), after[i].points.size());
        for (qsizetype k = 0; k < n; ++k) {
            const auto track = [&](const KxPointXY& q) {
                return pose.toTrack(static_cast<double>(q.x), static_cast<double>(q.y));
            };
            const kxsim::Vec3 a = track(before[i].points[k]), b = track(after[i].points[k]);
            isChanged = isChanged || std::abs(a.z - b.z) > 1e-4;
            const double fromTape = b.y - p.backToBack / 2.0 - kxsim::kTapeCircle;
            const double x = static_cast<double>(after[i].z) - behind; // of the axle
            // Further away the laser cuts the wheel some millimetres beside the middle of the defect.
            if (std::abs(a.z - b.z) > 1e-4 && std::abs(fromTape) < 4.0 && std::abs(x) < 200.0) {
                const double radius = p.diameter / 2.0;
                radii.push_back(std::hypot(x, radius - b.z) - radius - kxsim::s1002Height(fromTape));
            }
        }
        change.profiles += isChanged ? 1 : 0;
    }
    if (!radii.empty()) {
        const auto middle = radii.begin() + static_cast<std::ptrdiff_t>(radii.size() / 2);
        std::nth_element(radii.begin(), middle, radii.end());
        change.radius = *middle;
    }
    return change;
}

} // namespace

TEST(Defects, ChangeTheTreadByTheirHeight) {
    const Parameters p = undisturbed();
    const double depth = 430.0 - std::sqrt(430.0 * 430.0 - 40.0 * 40.0);
    const Change flat = changeOf(p, {Defect::Kind::Flat, 1, 1, 80.0, 0.0});
    EXPECT_GT(flat.profiles, 5);
    EXPECT_NEAR(-flat.radius, depth, 0.1);
    const Change buildUp = changeOf(p, {Defect::Kind::BuildUp, 2, 1, 1.5, 0.0});
    EXPECT_GT(buildUp.profiles, 5);
    EXPECT_NEAR(buildUp.radius, 1.5, 0.01);
}

TEST(Defects, FlatsAreEvenOrPlaneOverTheWidth) {
    const kxsim::WheelShape shape = {860.0, 368.0, 0.0};
    const double depth = 430.0 - std::sqrt(430.0 * 430.0 - 30.0 * 30.0);
    for (const kxsim::FlatShape flatShape : {kxsim::FlatShape::Even, kxsim::FlatShape::Plane}) {
        kxsim::Wheel wheel(shape, 1, 680.0);
        wheel.addFlat({0.0, 0.0, 30.0}, flatShape);
        for (const double axial : {53.0, 60.0, 70.0, 90.0, 104.0, 106.0}) {
            const double sound = -kxsim::s1002Height(axial - kxsim::kTapeCircle);
            const double radius = flatShape == kxsim::FlatShape::Even ? 430.0 - sound : 430.0;
            const double expected = axial > kxsim::kPatchTo ? sound : std::max(sound, 430.0 - (radius - depth));
            for (const double lean : {0.0, 0.5}) { // from below, and leaning outwards as a sensor looks
                const kxsim::Ray ray = {{0.0, 680.0 + axial - lean * (100.0 + expected), -100.0}, {0.0, lean, 1.0}};
                EXPECT_NEAR(ray.at(wheel.hit(ray, 0.0, 1000.0)).z, expected, 0.005)
                    << axial << " mm from the back, lean " << lean;
            }
        }
    }
}

TEST(Defects, ShowOnlyToTheirSensorAndWhereTheWheelRollsOverIt) {
    const Parameters p = undisturbed();
    EXPECT_EQ(changeOf(p, {Defect::Kind::Flat, 1, 2, 80.0, 0.0}).profiles, 0) << "the other wheel";
    EXPECT_EQ(changeOf(p, {Defect::Kind::Flat, 1, 1, 80.0, 120.0}).profiles, 0) << "elsewhere on the circumference";
    EXPECT_EQ(changeOf(p, {Defect::Kind::BuildUp, 1, 1, 1.5, -120.0}).profiles, 0);
}
