// Residuals of points on the calibration object, and the mean of poses.
#include "inspect/calibrate/flankResiduals.h"
#include "inspect/calibrate/poseAverage.h"
#include "inspect/calibrate/shots.h"

#include <algorithm>

using namespace calibration_test;

namespace {

/// A profile without noise and with the true pose.
ProfilePose exactPose(const Shot& shot) {
    ProfilePose exact;
    const kxsim::Vec3& at = shot.pose.origin;
    exact.pose = {at.x, at.y, at.z, shot.pose.alpha, shot.pose.beta, shot.pose.gamma};
    exact.foundY = at.y;
    for (const Point& p : shot.profile.points) {
        exact.points.push_back({p});
    }
    return exact;
}

/// A pose with one point on a flank.
ProfilePose poseAt(double x, double alpha, const char* name = "") {
    ProfilePose profile;
    profile.name = name;
    profile.pose = {x, 20.0, 30.0, alpha, 40.0, 50.0};
    profile.foundY = 20.0;
    profile.points = {{{0.0f, 0.0f}, 3, false, 0.0}};
    profile.uncertainty = {1.96, 0.98, 0.49, 0.0196, 0.0098, 0.0049}; // mm and degrees
    return profile;
}

} // namespace

TEST(FlankResiduals, AreTheDistancesAlongY) {
    for (const int placement : {1, 2, 3, 4}) {
        SCOPED_TRACE(placement);
        const Shot shot(placement, 0.0);
        const double facing = shot.pose.v().y < 0.0 ? -1.0 : 1.0;
        ProfilePose exact = exactPose(shot);
        detail::findResiduals(shot.task, exact);
        std::size_t onFlanks = 0;
        for (const FlankResidual& flank : exact.flanks) {
            EXPECT_GT(flank.points, 30);
            EXPECT_LT(flank.largest, 1e-3) << "rounding";
            EXPECT_FALSE(flank.isOff());
            onFlanks += static_cast<std::size_t>(flank.points);
        }
        const double p = shot.task.object.pitch;
        const double up = placementOf(placement).isMirrored ? -1.0 : 1.0;
        const auto isInside = [&](const kxsim::Vec3& at) {
            return up * at.z > -1.5 * p && up * at.z < 3.25 * p + shot.task.object.obliqueness * at.x;
        };
        const auto inside = std::count_if(shot.truth.begin(), shot.truth.end(), isInside);
        EXPECT_NEAR(static_cast<double>(onFlanks) / static_cast<double>(inside), 0.92, 0.01); // the margins are 0.08

        // A pose that is 0.25 mm too near: all points are that far in front of the object.
        ProfilePose moved = exact;
        moved.foundY -= 0.25 * facing;
        moved.flanks[4].uncertainty = 0.125;
        detail::findResiduals(shot.task, moved);
        EXPECT_NEAR(moved.flanks[4].mean, -0.25, 1e-3);
        EXPECT_NEAR(moved.flanks[4].largest, 0.25, 1e-3);
        EXPECT_EQ(moved.flanks[4].uncertainty, 0.125);
        EXPECT_NEAR(moved.rms, 0.25, 1e-3);
        EXPECT_TRUE(moved.flanks[4].isOff());
    }
}

TEST(FlankResiduals, TakeTheSlopeOfTheObliqueRidgeAlongZOrAcrossIt) {
    const Shot shot(1, 0.0);
    const CalibrationObject& object = shot.task.object;
    ProfilePose profile = exactPose(shot);
    detail::findResiduals(shot.task, profile);
    for (CalibrationPoint& point : profile.points) {
        for (int round = 0; round < 30 && point.flank >= 6u; ++round) { // along its ray onto the steeper flank
            const kxsim::Vec3 at =
                shot.pose.toTrack(static_cast<double>(point.point.x), static_cast<double>(point.point.y));
            const double fromCrest = std::abs(at.z - 2.5 * object.pitch - object.obliqueness * at.x);
            const double depth = object.slope * std::hypot(1.0, object.obliqueness) * fromCrest;
            point.point.y += static_cast<float>(depth - (at.y - object.crestY));
        }
    }
    detail::findResiduals(shot.task, profile);
    EXPECT_LT(profile.rms, 1e-3) << "0.05 of depths up to 18 mm where it is taken along Z";
    EXPECT_GT(profile.flanks[7].points, 30);
}

TEST(FlankResiduals, OfSeveralProfilesTogether) {
    std::vector<ProfilePose> profiles(3);
    profiles[0].flanks[6] = {30, 0.1, 0.2, 0.7, 0.1};
    profiles[2].flanks[6] = {10, -0.3, 0.4, 0.5, 0.4};
    const FlankResiduals all = detail::pooled(profiles);
    EXPECT_EQ(all[6].points, 40);
    EXPECT_NEAR(all[6].mean, 0.0, 1e-12);
    EXPECT_NEAR(all[6].rms, std::sqrt((30 * 0.04 + 10 * 0.16) / 40), 1e-12);
    EXPECT_EQ(all[6].largest, 0.7);
    EXPECT_NEAR(all[6].uncertainty, 5.0 / 40, 1e-12); // of 30 x 0.1 and 10 x 0.4, as independent
    EXPECT_TRUE(all[0].points == 0 && std::isnan(all[0].mean) && !all[0].isOff());
    EXPECT_EQ(flankName(5) + ", " + flankName(6), "behind crest 3, before oblique crest");
}

TEST(PoseAverage, IsTakenModulo360Degrees) {
    const PoseAverage mean = detail::averagePoses(
        {poseAt(1.0, 359.95), ProfilePose{"none", "fault"}, poseAt(1.3, 0.05), poseAt(0.8, 0.03)}, true);
    EXPECT_EQ(mean.fault, "");
    EXPECT_EQ(mean.profiles, 3);
    EXPECT_NEAR(mean.pose.x, 3.1 / 3, 1e-9);
    EXPECT_NEAR(mean.pose.alpha, 360.01, 1e-9);
    EXPECT_NEAR(mean.pose.gamma, 50.0, 1e-9);
    EXPECT_NEAR(mean.deviation.x, std::sqrt(0.19 / 3), 1e-9); // squares of 0.1, -0.8 and 0.7 over 9, over 3 - 1
    EXPECT_NEAR(mean.deviation.alpha, std::sqrt(0.0028), 1e-9); // degrees; squares of -0.06, 0.04 and 0.02 over 3 - 1
    EXPECT_NEAR(mean.largest.alpha, 0.06, 1e-9);
    EXPECT_NEAR(mean.largest.x, 0.8 / 3, 1e-9);
    EXPECT_NEAR(mean.pointDifference, 0.8 / 3, 1e-5);
    EXPECT_EQ(mean.foundY, 20.0);

    // Deviations of a profile of 1 mm and 0.01 degrees by its noise, of the mean of three a root of three less. The spread
    // of alpha, 0.053 degrees, is certainly more: its interval is that of Student's t with two degrees of freedom.
    EXPECT_NEAR(mean.uncertainty.x, 1.96 / std::sqrt(3.0), 1e-9);
    EXPECT_NEAR(mean.uncertainty.gamma, 0.0049 / std::sqrt(3.0), 1e-9);
    EXPECT_NEAR(mean.uncertainty.alpha, 4.303 * mean.deviation.alpha / std::sqrt(3.0), 1e-9);

    // A y that is given stands beside that of the object, which has the spread.
    std::vector<ProfilePose> given = {poseAt(1.0, 2.0), poseAt(1.0, 2.0)};
    given[1].foundY = 20.5;
    const PoseAverage pair = detail::averagePoses(given, false);
    EXPECT_TRUE(pair.pose.y == 20.0 && pair.foundY == 20.25);
    EXPECT_NEAR(pair.largest.y, 0.25, 1e-9);
    EXPECT_NEAR(pair.uncertainty.y, 0.98 / std::sqrt(2.0), 1e-9);

    const PoseAverage one = detail::averagePoses({poseAt(1.0, 2.0)}, true);
    EXPECT_TRUE(one.pose.x == 1.0 && std::isnan(one.largest.x) && std::isnan(one.deviation.x) &&
                std::isnan(one.pointDifference));
}

TEST(PoseAverage, RefusesProfilesOfDifferentPoses) {
    const auto fault = [](double x, double alpha) {
        return detail::averagePoses({poseAt(1.0, 2.0, "%2"), poseAt(1.0 + x, 2.0 + alpha, "b")}, true).fault;
    };
    EXPECT_EQ(fault(1.19, 0.39), "");
    EXPECT_EQ(fault(1.3, 0.0),
              "the profiles are not of one pose: '%2' differs from the mean by 0.00 degrees and 0.65 mm");
    EXPECT_EQ(fault(0.0, 0.5),
              "the profiles are not of one pose: '%2' differs from the mean by 0.25 degrees and 0.00 mm");
}
