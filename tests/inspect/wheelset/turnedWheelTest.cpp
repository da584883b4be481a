// The axle of a wheel from points that are turned about it.
#include "inspect/wheelset/turnedWheel.h"
#include "simulator/random.h"
#include "simulator/wornRim.h"

#include <gtest/gtest.h>

using namespace KxInspect::detail;

namespace {

constexpr double kBack = 679.4; // mm across
constexpr double kRadius = 421.0; // at the tape circle

/// How points are made: profiles 6 mm apart, of what is seen of the contour from one side.
struct Seen {
    int profiles = 60;
    double noise = 0.0;
    double yaw = 0.0;
    double spikes = 0.0;
    double farthest = 180.0; ///< of a profile from the axle, mm
};

std::vector<TrackPoint> pointsOf(const Seen& seen) {
    const kxsim::Contour contour = kxsim::makeRimContour({2.0, 1.5});
    kxsim::Random random({7, static_cast<std::uint64_t>(seen.profiles)});
    std::vector<TrackPoint> points;
    for (int i = 0; i < seen.profiles; ++i) {
        const double along = seen.farthest * (2.0 * i / (seen.profiles - 1) - 1.0);
        for (std::size_t k = 0; k < contour.size(); k += 30) { // some 0.3 mm
            const double radius = kRadius + contour[k].radius;
            // Where the plane of the profile meets the circle on which the point turns.
            const double x = (along - std::sin(seen.yaw) * contour[k].axial) / std::cos(seen.yaw);
            const double z = -std::sqrt(radius * radius - x * x);
            const double dy = std::cos(seen.yaw) * contour[k].axial - std::sin(seen.yaw) * x;
            const double off = random.chance(seen.spikes) ? random.uniform(-8.0, 8.0) : seen.noise * random.normal();
            points.push_back({-1000.0 + along, kBack + dy + 0.6 * off, kRadius + z + 0.8 * off, i});
        }
    }
    return points;
}

/// Of the contour above its tape circle, on the tread.
double heightAt(double axial) {
    double height = 0.0;
    for (const kxsim::ContourPoint& p : kxsim::makeRimContour({2.0, 1.5})) {
        height = p.axial > 40.0 && p.axial <= axial ? p.radius : height; // points are 0.005 mm apart
    }
    return height;
}

TEST(TurnedWheel, FindsTheAxleAndTheSection) {
    const struct {
        const char* desc;
        Seen seen;
        double along; ///< largest errors
        double radius;
        double yaw;
    } cases[] = {{"exact", {}, 0.002, 0.003, 1e-5},
                 {"yaw", {60, 0.0, 0.004}, 0.002, 0.003, 1e-5},
                 {"noise", {60, 0.05, -0.002}, 0.01, 0.02, 2e-4},
                 {"spikes", {60, 0.05, 0.0, 0.02}, 0.01, 0.02, 2e-4},
                 {"few profiles of a short arc", {16, 0.02, 0.0, 0.0, 150.0}, 0.05, 0.1, 1e-3}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        const TurnedWheel wheel = turnWheel(pointsOf(c.seen), c.seen.profiles, kBack + 0.8);
        ASSERT_TRUE(wheel.isFound()) << wheel.reason;
        EXPECT_NEAR(wheel.axle.along, -1000.0 + 0.8 * c.seen.yaw, c.along); // at the pivot
        EXPECT_NEAR(wheel.axle.yaw, c.seen.yaw, c.yaw);
        EXPECT_NEAR(wheel.axle.up, kRadius, c.radius);
        double off = 0.0; // at the tape circle
        int count = 0;
        for (std::size_t i = 0; i < wheel.contour.size(); ++i) {
            const ContourBin& bin = wheel.contour[i];
            const TurnedPoint at = wheel.grid.pointAt({bin.along, bin.off}, wheel.grid.isBackBin(i));
            if (bin.isSeen() && std::abs(at.across - kBack - 70.0) < 2.0) {
                off += at.radius - kRadius - heightAt(at.across - kBack);
                ++count;
            }
        }
        ASSERT_GT(count, 5);
        EXPECT_NEAR(off / count, 0.0, c.radius);
    }
}

TEST(TurnedWheel, GivesAReasonForWhatIsNoWheel) {
    std::vector<TrackPoint> points = pointsOf({});
    EXPECT_FALSE(turnWheel({}, 0, kBack).isFound());
    EXPECT_FALSE(turnWheel(points, 60, kBack + 200.0).isFound()); // nothing where the flange would be
    for (TrackPoint& p : points) {
        p.up = 5.0; // a flat thing
    }
    EXPECT_EQ(turnWheel(points, 60, kBack).reason, "the tips of the flange are on no circle of a wheel");
    points = pointsOf({});
    for (TrackPoint& p : points) {
        p.across += p.profile % 2 == 0 ? 1.5 : -1.5; // a sensor that shakes
        p.up += p.profile % 3 == 0 ? 1.5 : -1.5;
    }
    EXPECT_FALSE(turnWheel(points, 60, kBack).isFound());
}

TEST(TurnedWheel, TheFaceIsWhereMostPointsAre) {
    const std::optional<double> face = findFace(pointsOf({60, 0.05}), kBack + 9.0);
    ASSERT_TRUE(face);
    EXPECT_NEAR(*face, kBack, 0.3);
    EXPECT_FALSE(findFace(pointsOf({}), kBack + 300.0));
}

} // namespace
