// The pose of a sensor from simulated profiles of the calibration object.
#include "inspect/calibrate/shots.h"
#include "inspect/inspectSupport.h"

#include <functional>

using namespace calibration_test;

TEST(Placement, SaysHowTheObjectIsSeen) {
    const struct {
        int code;
        bool isMirrored, isTurned, findsY;
    } cases[] = {{-1, false, false, false}, {0, false, false, false}, {1, false, false, false},
                 {2, false, true, true},    {3, true, false, false},  {4, true, true, true},
                 {5, false, true, true},    {6, false, false, false}, {50, false, false, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        const Placement placement = placementOf(c.code);
        EXPECT_EQ(placement.isMirrored, c.isMirrored);
        EXPECT_EQ(placement.isTurned, c.isTurned);
        EXPECT_EQ(placement.findsY, c.findsY);
        EXPECT_EQ(calibrationObjectFor(c.code, 7.0).obliqueness < 0.0, c.isTurned);
        // The calibration sees it in the same way: y of the sensor, which is -190 or 430, is found or not.
        const Shot shot(c.code);
        const ProfilePose found = measurePose(shot.profile, shot.task);
        ASSERT_EQ(found.fault, "");
        EXPECT_EQ(std::isnan(found.pose.y), !c.findsY);
        EXPECT_EQ(found.pose.beta > 90.0, c.isTurned);
        EXPECT_EQ(found.pose.gamma > 180.0, c.isMirrored);
    }
}

TEST(MeasurePose, FindsTheSimulatedPose) {
    for (const int placement : {1, 2, 3, 4, 5}) {
        SCOPED_TRACE(placement);
        Shot shot(placement);
        ASSERT_TRUE(shot.isInView);
        shot.task.sensorY = shot.trueY();
        shot.profile.points.insert(shot.profile.points.begin(), Point()); // NaN
        const ProfilePose found = measurePose(shot.profile, shot.task);
        shot.profile.points.erase(shot.profile.points.begin());
        ASSERT_EQ(found.fault, "");
        const double truth[] = {shot.pose.alpha, shot.pose.beta, shot.pose.gamma};
        for (std::size_t i = 0; i < 3; ++i) {
            const PoseField& angle = kPoseFields[i + 3];
            EXPECT_NEAR(std::remainder(found.pose.*angle.value - truth[i], 360.0), 0.0, 0.1) << angle.name;
        }
        EXPECT_LT(pointError(shot, found.pose), 0.3);
        EXPECT_NEAR(found.foundY, shot.pose.origin.y, 0.3);
        EXPECT_NEAR(found.rms, 0.02, 0.012);
        EXPECT_LT(found.angleDeviation, 0.025);
        EXPECT_EQ(found.points.size(), shot.profile.points.size());
    }
}

TEST(MeasurePose, SaysWhyThereIsNoPose) {
    const CalibrationTerms terms{"--position", "--oblique", "--sensor-y", "--plane-y"};
    const struct {
        const char* desc;
        std::function<void(Shot&)> change;
        const char* fault;
        const char* inTerms;
    } cases[] = {
        {"no points", [](Shot& s) { s.profile.points.clear(); }, "shows 0 apexes", "shows 0 apexes"},
        {"mirrored placement", [](Shot& s) { s.task.placement = 4; }, "it would with placement 2 obliqueness -0.3",
         "it would with --position 2 --oblique -0.3"},
        {"unknown placement", [](Shot& s) { s.task.placement = 1, s.task.object.obliqueness = 0.5; },
         "another pitch or slope", "another pitch or slope"},
        {"oblique the other way", [](Shot& s) { s.task.object.obliqueness = 0.3; },
         "it would with placement 2 obliqueness -0.3", "it would with --position 2 --oblique -0.3"},
        {"other side", [](Shot& s) { s.task.sensorY = 240.0f - s.trueY(); },
         "other side of the crests than sensorY tells: gamma is taken to be 0 to 180", "than --sensor-y tells"},
        {"other side, from below", [](Shot& s) { s = Shot(3), s.task.sensorY = 240.0f - s.trueY(); },
         "gamma is taken to be 180 to 360", "than --sensor-y tells"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        Shot shot(2);
        c.change(shot);
        const ProfilePose found = measurePose(shot.profile, shot.task);
        EXPECT_FALSE(found.hasPose());
        EXPECT_NE(found.fault.find(c.fault), std::string::npos) << found.fault;
        EXPECT_NE(measurePose(shot.profile, shot.task, terms).fault.find(c.inTerms), std::string::npos);
        EXPECT_TRUE(std::isnan(found.pose.x) && std::isnan(found.foundY) && std::isnan(found.flanks[0].mean));
        EXPECT_EQ(found.points.size(), shot.profile.points.size()) << "which are drawn";
    }
}

TEST(MeasurePose, RefusesInvalidTasks) {
    const std::pair<const char*, std::function<void(CalibrationTask&)>> cases[] = {
        {"pitch", [](CalibrationTask& t) { t.object.pitch = 0.0; }},
        {"slope", [](CalibrationTask& t) { t.object.slope = -1.0; }},
        {"obliqueness", [](CalibrationTask& t) { t.object.obliqueness = 0.0; }},
        {"crestY", [](CalibrationTask& t) { t.object.crestY = INFINITY; }},
        {"sensorY", [](CalibrationTask& t) { t.sensorY = NAN; }},
    };
    for (const auto& [key, change] : cases) {
        Shot shot(2);
        change(shot.task);
        inspect_test::expectError([&] { measurePose(shot.profile, shot.task); }, ErrorKind::BadArgument, key);
    }
}

TEST(MeasurePoses, LeavesOutProfilesWithoutAPose) {
    Shot first(3);
    const Shot second(3, 0.02, 9);
    std::vector<double> parts;
    const auto note = [&](const std::string&, double part) { parts.push_back(part); };
    const std::vector<NamedProfile> profiles = {
        {"a", first.profile}, {"flat", {{{0, 9}, {1, 9}}}}, {"b", second.profile}};
    CalibrationResult result = measurePoses(profiles, first.task, note);
    EXPECT_EQ(parts, (std::vector{0.0, 1.0 / 3.0, 2.0 / 3.0}));
    ASSERT_TRUE(result.hasPose());
    EXPECT_FALSE(result.hasY());
    EXPECT_EQ(result.average.profiles, 2);
    EXPECT_EQ(result.profiles[1].name, "flat");
    ASSERT_EQ(result.warnings.size(), 2u);
    EXPECT_EQ(result.warnings[0], "'flat' " + result.profiles[1].fault);
    EXPECT_EQ(result.warnings[1].find("position 3 does not find y; tell it with sensorY"), 0u) << result.warnings[1];
    EXPECT_EQ(result.flanks[2].points, result.profiles[0].flanks[2].points + result.profiles[2].flanks[2].points);
    // A y that contradicts the object is used, with a warning.
    first.task.sensorY = first.trueY() + 1.5f;
    result = measurePoses(profiles, first.task);
    EXPECT_EQ(result.average.pose.y, static_cast<double>(*first.task.sensorY));
    EXPECT_NEAR(result.average.foundY, first.pose.origin.y, 0.3);
    EXPECT_EQ(result.warnings.at(1).find("sensorY and crestY do not fit together"), 0u) << result.warnings[1];

    result = measurePoses({profiles[1]}, first.task);
    EXPECT_FALSE(result.hasPose());
    EXPECT_TRUE(result.warnings.empty());
    EXPECT_TRUE(std::isnan(result.average.pose.x) && std::isnan(result.average.foundY));
}
