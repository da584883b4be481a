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
        const SensorPose& u = found.uncertainty;
        EXPECT_NEAR(found.angleDeviation, std::max({u.alpha, u.beta, u.gamma}) / 1.96, 1e-5);
        EXPECT_LT(std::abs(found.foundY - shot.pose.origin.y), 2.0 * u.y);
        EXPECT_LT(u.y, 0.1);
        EXPECT_EQ(found.points.size(), shot.profile.points.size());
    }
}

TEST(MeasurePose, SaysWhyThereIsNoPose) {
    const CalibrationTerms terms{"--position", "--oblique", "--sensor-y", "--plane-y", "--side", "--moved"};
    const struct {
        const char* desc;
        std::function<void(Shot&)> change;
        const char* fault;
        const char* inTerms;
    } cases[] = {
        {"no points", [](Shot& s) { s.profile.points.clear(); }, "shows 0 apexes", "shows 0 apexes"},
        {"mirrored placement", [](Shot& s) { s.task.placement = 4; },
         "it would with placement 2 obliqueness -0.3, or is the sensor upside down?",
         "it would with --position 2 --oblique -0.3, or"},
        {"unturned placement", [](Shot& s) { s.task.placement = 1; }, "it would with placement 2 obliqueness -0.3",
         "it would with --position 2 --oblique -0.3"},
        {"oblique the other way", [](Shot& s) { s.task.object.obliqueness = 0.3; },
         "it would with placement 1 obliqueness 0.3", "it would with --position 1 --oblique 0.3"},
        {"other pitch", [](Shot& s) { s.task.object.pitch *= 1.005; }, "a flank is off by 0.1", "a flank is off by"},
        {"a flank is missing",
         [](Shot& s) { std::erase_if(s.profile.points, [](const Point& p) { return p.x > 5.0f && p.x < 19.0f; }); },
         "ridges are hidden", "ridges are hidden"},
        {"noise", [](Shot& s) { s = Shot(2, 2.0); }, "leaves the pose too uncertain", "leaves the pose too uncertain"},
        {"other side", [](Shot& s) { s.task.side = SensorSide::SmallerY; },
         "fits only a sensor on the other side of the crests than side tells, or an object with obliqueness 0.3",
         "than --side tells, or an object with --oblique 0.3"},
        {"other side, by y", [](Shot& s) { s = Shot(3), s.task.side.reset(), s.task.sensorY = 240.0f - s.trueY(); },
         "on the other side of the crests than sensorY tells", "than --sensor-y tells"},
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
        {"side", [](CalibrationTask& t) { t.side.reset(); }},
        {"objectError", [](CalibrationTask& t) { t.objectError.slope = -0.001; }},
        {"objectError", [](CalibrationTask& t) { t.objectError.pitch = 23.0; }},
        {"obliqueCrest", [](CalibrationTask& t) { t.obliqueCrest = ObliqueCrest::Below; }},
        {"side", [](CalibrationTask& t) { t.sensorY = 119.0f; }}, // that of the crests is 120, the side the other one
    };
    for (const auto& [key, change] : cases) {
        Shot shot(2);
        change(shot.task);
        inspect_test::expectError([&] { measurePose(shot.profile, shot.task); }, ErrorKind::BadArgument, key);
    }
}

TEST(MeasurePose, LooksTheSameFromTheOtherSide) {
    // Mirrored in Y with the object: the same profile from a sensor that is turned the other way.
    for (const int placement : {1, 2, 3, 4}) {
        SCOPED_TRACE(placement);
        Shot shot(placement);
        const ProfilePose found = measurePose(shot.profile, shot.task);
        shot.task.side = shot.task.side == SensorSide::SmallerY ? SensorSide::LargerY : SensorSide::SmallerY;
        shot.task.object.obliqueness *= -1.0;
        shot.task.placement = std::array{0, 2, 1, 4, 3}[static_cast<std::size_t>(placement)];
        const ProfilePose other = measurePose(shot.profile, shot.task); // the object turned with the sensor about Z
        ASSERT_EQ(other.fault, "");
        EXPECT_NEAR(std::abs(std::remainder(other.pose.beta - found.pose.beta, 360.0)), 180.0, 1e-6);
        EXPECT_NEAR(other.pose.x, -found.pose.x, 1e-6);
        EXPECT_NEAR(other.foundY - 120.0, 120.0 - found.foundY, 1e-3);
    }
}

TEST(MeasurePose, FindsPosesAmongOutliersAndSaysHowUncertainTheyAre) {
    constexpr int kPoses = 200;
    constexpr int kFewest = 178; // of 200 intervals of 95 %, all but one time in 1,000
    int found = 0, inView = 0, outliers = 0;
    std::array<int, kPoseFields.size()> held{};
    for (std::uint64_t i = 0; i < kPoses; ++i) {
        kxsim::Random random({19, i});
        kxsim::CalibrationSensor sensor;
        sensor.noise = random.uniform(0.01, 0.1);
        sensor.spikes = random.uniform(0.0, 0.05);
        sensor.spikeSize = random.uniform(2.0, 20.0);
        const kxsim::PoseTrial trial =
            kxsim::tryPose(kxsim::randomSetup(1 + static_cast<int>(i % 4), sensor, 5.0, random), random);
        inView += trial.isInView ? 1 : 0;
        if (!trial.result.hasPose()) {
            EXPECT_FALSE(trial.isInView) << i << ": " << trial.result.profiles[0].fault;
            continue;
        }
        ++found;
        outliers += trial.result.profiles[0].outliers;
        EXPECT_LT(trial.angleError(), 0.2) << i;
        for (std::size_t field = 0; field < held.size(); ++field) {
            held[field] += trial.holds(kPoseFields[field]) ? 1 : 0;
        }
    }
    EXPECT_GT(inView, 180);
    EXPECT_NEAR(outliers, 0.025 * 750 * found, 0.15 * 0.025 * 750 * found) << "a profile has some 750 points on flanks";
    for (std::size_t field = 0; field < held.size(); ++field) {
        EXPECT_GE(held[field] * kPoses, kFewest * found) << kPoseFields[field].name << " of " << found;
    }
}

TEST(MeasurePose, NeighboursThatAreAlikeWidenTheIntervals) {
    constexpr int kShots = 20;
    double ratios = 0.0;
    for (std::uint64_t seed = 1; seed <= kShots; ++seed) {
        const Shot shot(2, 0.03, seed);
        Shot smoothed(2, 0.0);
        const std::vector<Point> exact = smoothed.profile.points;
        for (std::size_t i = 2; i + 2 < exact.size(); ++i) { // noise of the same size, smoothed over five points
            for (std::size_t k = i - 2; k <= i + 2; ++k) {
                smoothed.profile.points[i].y += (shot.profile.points[k].y - exact[k].y) / std::sqrt(5.0f);
            }
        }
        ratios += measurePose(smoothed.profile, smoothed.task).uncertainty.beta /
                  measurePose(shot.profile, shot.task).uncertainty.beta;
    }
    EXPECT_NEAR(ratios / kShots, std::sqrt(5.0), 0.25); // the mean of many such points has five times the variance
}

TEST(MeasurePose, TheErrorOfTheObjectIsThatOfAPoseByAnotherObject) {
    const ObjectError errors[] = {{0.01, 0.0, 0.0}, {0.0, 0.0007, 0.0}, {0.0, 0.0, 0.0003}};
    for (const ObjectError& error : errors) {
        Shot shot(2);
        const ProfilePose exact = measurePose(shot.profile, shot.task);
        shot.task.objectError = error;
        const ProfilePose found = measurePose(shot.profile, shot.task);
        const CalibrationResult mean = measurePoses({{"a", shot.profile}, {"b", Shot(2, 0.02, 9).profile}}, shot.task);
        shot.task.objectError = {};
        shot.task.object.pitch += error.pitch;
        shot.task.object.slope += error.slope;
        shot.task.object.obliqueness -= error.obliqueness; // seen from the other side
        const ProfilePose other = measurePose(shot.profile, shot.task);
        for (const PoseField& field : kPoseFields) {
            const double change = std::abs(other.pose.*field.value - exact.pose.*field.value);
            const double byObject = found.byObject.*field.value;
            EXPECT_NEAR(byObject, 1.96 * change, 0.03 * byObject + 1e-4) << field.name << " " << error.slope;
            EXPECT_NEAR(found.uncertainty.*field.value, std::hypot(exact.uncertainty.*field.value, byObject), 1e-9);
            EXPECT_GT(mean.average.uncertainty.*field.value, 0.95 * byObject) << "of both profiles alike";
            EXPECT_LT(mean.average.uncertainty.*field.value, found.uncertainty.*field.value);
        }
    }
}

TEST(MeasurePoses, ShotsOfAMovedObjectShowHowTheAxesRun) {
    const auto trial = [](int placement, double turn, int code, std::array<double, 3> moved, bool isSideGiven) {
        kxsim::Random random({23});
        kxsim::PoseTrialSetup setup = kxsim::randomSetup(placement, {}, 5.0, random);
        setup.pose.gamma = turn == 0.0 ? -setup.pose.gamma : setup.pose.gamma + turn;
        setup.task.placement = code;
        setup.moves.push_back(moved);
        if (!isSideGiven) {
            setup.task.side.reset();
        }
        return kxsim::tryPose(setup, random);
    };
    for (const int placement : {1, 2, 3, 4}) {
        SCOPED_TRACE(placement);
        const auto right = [&](double turn, std::array<double, 3> moved) {
            const kxsim::PoseTrial found = trial(placement, turn, placement, moved, false);
            EXPECT_TRUE(found.result.hasPose()) << reasonWithoutPose(found.result);
            EXPECT_LT(found.angleError(), 0.05);
            EXPECT_LT(found.placeError(), 0.3);
            EXPECT_EQ(found.result.otherPose.has_value(), moved[2] == 0.0);
        };
        right(360.0, {0.0, 8.0, 0.0});
        right(360.0, {-9.0, -8.0, 7.0});
        right(0.0, {0.0, 8.0, 0.0}); // gamma mirrored
        right(180.0, {0.0, 8.0, 7.0}); // upside down
        // One shot of a sensor that is upside down is that of an upright one with the mirrored code: the other pose.
        const int mirrored = std::array{0, 3, 4, 1, 2}[static_cast<std::size_t>(placement)];
        kxsim::PoseTrial upsideDown = trial(placement, 180.0, mirrored, {0.0, 0.0, 0.0}, true);
        ASSERT_TRUE(upsideDown.result.hasPose() && upsideDown.result.otherPose);
        EXPECT_EQ(upsideDown.result.warnings.back().find("only placement " + std::to_string(mirrored)), 0u);
        EXPECT_GT(upsideDown.angleError(), 50.0);
        upsideDown.result.average.pose = *upsideDown.result.otherPose;
        EXPECT_LT(upsideDown.angleError(), 0.05);
        EXPECT_LT(upsideDown.placeError(), 0.3);
        kxsim::Random random({29});
        kxsim::PoseTrialSetup setup = kxsim::randomSetup(placement, {}, 5.0, random);
        setup.task.obliqueCrest = placement > 2 ? ObliqueCrest::Below : ObliqueCrest::Above;
        EXPECT_FALSE(kxsim::tryPose(setup, random).result.otherPose) << "it is told where the crest is";
        const auto refusal = [&](int code, std::array<double, 3> moved) {
            return trial(placement, 180.0, code, moved, true).result.profiles[0].fault;
        };
        EXPECT_EQ(refusal(mirrored, {0.0, 0.0, 7.0}).find("contradicts placement"), 0u);
    }
    const kxsim::PoseTrial noSide = trial(2, 360.0, 2, {0.0, 0.001, 0.0}, false);
    EXPECT_EQ(noSide.result.profiles[0].fault.find("fits a sensor on either side of the crests"), 0u);
    EXPECT_FALSE(noSide.result.side);
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
    ASSERT_EQ(result.warnings.size(), 3u);
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
