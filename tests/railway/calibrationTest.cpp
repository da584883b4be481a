// The calibration of a sensor's pose on simulated profiles of the calibration object.
#include "support/testing.h"
#include "trials/calibrationTrial.h"

#include <numbers>

using namespace testing_support;

namespace {

ExactList exactCoord(const _KxMETRO_SensorCoord_& c) {
    return exact(c.x, c.y, c.z, c.alpha, c.beta, c.gamma, c.position);
}

/// A calibration with everything that it needs.
struct Case {
    int placement;
    kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(placement, 500.0);
    kxsim::Pose pose = kxsim::nominalCalibrationPose(placement, object);
    float p1 = static_cast<float>(object.p1()), p2 = static_cast<float>(object.p2());
    float p3 = static_cast<float>(object.p3()), p4 = static_cast<float>(object.p4());
    KxProfile profile;
    QList<QPointF> apexes;
    _KxMETRO_SensorCoord_ coord{11, 12, 13, 14, 15, 16, placement};
    _KxMETRO_DbgData_ dbg;

    explicit Case(int place = 2) : placement(place) {
        kxsim::Random random({52, static_cast<std::uint64_t>(place)});
        kxsim::takeCalibrationProfile(object, placement, pose, {}, random, profile);
    }

    bool run() { return METRO_calcAnglesCoord(profile, p1, p2, p3, p4, coord, apexes, &dbg); }

    void removeFlank(int i) {
        const QList<QPointF> ends = trueApexes();
        profile.points.removeIf([&](const KxPointXY& p) {
            const double x = static_cast<double>(p.x);
            return x > ends[i - 1].x() && x < ends[i].x();
        });
    }

    void expectRefusal() {
        const _KxMETRO_SensorCoord_ before = coord;
        EXPECT_FALSE(run());
        EXPECT_EXACT(exactCoord(coord), exactCoord(before));
        EXPECT_TRUE(std::isnan(dbg.value0) && std::isnan(dbg.value1));
    }

    void expectTruth(double degrees, double mm) const {
        const auto error = [](float radians, double truth) {
            return std::remainder(static_cast<double>(radians) * 180 / std::numbers::pi - truth, 360.0);
        };
        EXPECT_NEAR(error(coord.alpha, pose.alpha), 0, degrees);
        EXPECT_NEAR(error(coord.beta, pose.beta), 0, degrees);
        EXPECT_NEAR(error(coord.gamma, pose.gamma), 0, degrees);
        EXPECT_NEAR(static_cast<double>(coord.x), pose.origin.x, mm);
        EXPECT_NEAR(static_cast<double>(coord.y), pose.origin.y, mm);
        EXPECT_NEAR(static_cast<double>(coord.z), pose.origin.z, mm);
    }

    /// Where the seven apexes of the object appear in the profile.
    QList<QPointF> trueApexes() const {
        const double p = object.pitch, t = object.obliqueness, depth = object.slope * p / 2;
        const double facing = pose.v().y < 0 ? -1 : 1;
        const double up = placement == 3 || placement == 4 ? -1 : 1;
        // Each apex is a line along X (or along the oblique valley or crest): up Z = z + k X at a depth d + e X.
        const double lines[7][4] = {{-p, 0, 0, 0},     {-p / 2, 0, depth, 0},
                                    {0, 0, 0, 0},      {p / 2, 0, depth, 0},
                                    {p, 0, 0, 0},      {1.75 * p, t / 2, 0.75 * p * object.slope, t / 2 * object.slope},
                                    {2.5 * p, t, 0, 0}};
        QList<QPointF> found;
        const kxsim::Vec3 u = pose.u(), v = pose.v();
        for (const auto& [z, k, d, e] : lines) {
            // origin + px u + py v on both planes up Z - k X = z and Y - facing e X = crestY + facing d.
            const double a = up * u.z - k * u.x, b = up * v.z - k * v.x;
            const double f = u.y - facing * e * u.x, g = v.y - facing * e * v.x;
            const double r = z - up * pose.origin.z + k * pose.origin.x;
            const double s = object.crestY + facing * d - pose.origin.y + facing * e * pose.origin.x;
            found.append(QPointF((r * g - s * b) / (a * g - f * b), (a * s - f * r) / (a * g - f * b)));
        }
        return found;
    }
};

} // namespace

TEST(Calibration, FindsPosesInViewAndIsNeverWrong) {
    int inView = 0, right = 0;
    for (int placement = 0; placement <= 6; ++placement) {
        const kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(placement, 500.0);
        const kxsim::Pose nominal = kxsim::nominalCalibrationPose(placement, object);
        for (int i = 0; i < 27; ++i) {
            kxsim::Random random({7, static_cast<std::uint64_t>(placement), static_cast<std::uint64_t>(i)});
            const kxsim::Vec3 offset{random.uniform(-50, 50), random.uniform(-50, 50), random.uniform(-50, 50)};
            const int alpha = i % 3 * 10 - 10, beta = i / 3 % 3 * 10 - 10, gamma = i / 9 * 10 - 10;
            const kxsim::Pose pose = kxsim::offsetPose(nominal, placement, alpha, beta, gamma, offset);
            const kxsim::CalibrationTrial trial = kxsim::tryCalibration(object, placement, pose, {}, random);
            const bool isRight = trial.isDone && trial.angleError <= 0.1 && trial.pointError <= 0.3;
            EXPECT_EQ(trial.isDone, isRight) << placement << ", pose " << i << ": off by " << trial.pointError << " mm";
            inView += trial.isInView ? 1 : 0;
            right += trial.isInView && isRight ? 1 : 0;
        }
    }
    EXPECT_GT(inView, 100);
    EXPECT_GE(right, 0.95 * inView) << "of " << inView;
}

TEST(Calibration, FoldsByThePlacement) {
    constexpr float kTurn = 6.2831855f;
    for (int placement = 0; placement <= 6; ++placement) {
        SCOPED_TRACE(placement);
        Case c(placement);
        ASSERT_TRUE(c.run());
        const bool isTurned = placement == 2 || placement == 4 || placement == 5;
        const bool isMirrored = placement == 3 || placement == 4;
        if (!isTurned) {
            EXPECT_EQ(c.coord.y, 12); // the caller's
            c.coord.y = static_cast<float>(c.pose.origin.y);
        }
        c.expectTruth(0.05, 0.3);
        EXPECT_EQ(c.coord.beta > 2.5f, isTurned); // 225 degrees, or 45
        EXPECT_EQ(c.coord.gamma > kTurn / 2, isMirrored); // 333 degrees, or 27
        EXPECT_NEAR(c.coord.alpha, isMirrored ? kTurn : 0, 0.001f);
        EXPECT_TRUE(c.coord.position == placement && c.dbg.apexCount == 7);
        EXPECT_NEAR(c.dbg.value0, 0.02f, 0.01f); // the noise
        EXPECT_TRUE(c.dbg.value1 < 0.025f && !std::isnan(c.dbg.lineK[7]));

        // Neither the order of the points nor a missing record of what was found makes a difference.
        const _KxMETRO_SensorCoord_ before = c.coord;
        std::shuffle(c.profile.points.begin(), c.profile.points.end(), std::mt19937(1));
        EXPECT_TRUE(METRO_calcAnglesCoord(c.profile, c.p1, c.p2, c.p3, c.p4, c.coord, {}, nullptr));
        EXPECT_EXACT(exactCoord(c.coord), exactCoord(before));
    }
}

TEST(Calibration, GivenApexes) {
    for (const int placement : {2, 4}) {
        Case c(placement);
        const QList<QPointF> truth = c.trueApexes();
        for (int i = 0; i < truth.size(); ++i) { // rough ones only locate the flanks
            c.apexes.append(truth[i] + QPointF(i % 2 == 0 ? 0.7 : -0.7, i % 3 - 1));
        }
        ASSERT_TRUE(c.run());
        c.expectTruth(0.05, 0.3);
        EXPECT_TRUE(std::isnan(c.dbg.lineK[6]) && std::isnan(c.dbg.lineB[6]) && std::isnan(c.dbg.lineK[7]));
        EXPECT_NEAR(c.dbg.lineK[0] * c.dbg.apexX[1] + c.dbg.lineB[0], c.dbg.apexY[1], 0.01f);

        // Without a profile they are the measurement, and rough ones contradict the object.
        c.profile.clear();
        c.expectRefusal();
        c.apexes = truth;
        ASSERT_TRUE(c.run());
        c.expectTruth(0.001, 0.01);
        std::reverse(c.apexes.begin(), c.apexes.end());
        EXPECT_TRUE(c.run());
    }
}

TEST(Calibration, RefusesWhatContradictsTheObject) {
    const std::pair<const char*, void (*)(Case&)> kCases[] = {
        {"pitch 1 % larger", [](Case& c) { c.p1 *= 1.01f; }},
        {"pitch 0.5 % smaller", [](Case& c) { c.p1 *= 0.995f; }},
        {"valleys 0.5 % deeper", [](Case& c) { c.p2 *= 1.005f; }},
        {"oblique the other way", [](Case& c) { c.p3 = -c.p3; }},
        {"no pitch", [](Case& c) { c.p1 = 0; }},
        {"no depth", [](Case& c) { c.p2 = 0; }},
        {"not oblique", [](Case& c) { c.p3 = 0; }},
        {"pitch of NaN", [](Case& c) { c.p1 = NAN; }},
        {"depth of infinity", [](Case& c) { c.p2 = INFINITY; }},
        {"obliqueness of NaN", [](Case& c) { c.p3 = NAN; }},
        {"turned placement", [](Case& c) { c.coord.position = 1; }},
        {"mirrored placement", [](Case& c) { c.coord.position = 4; }},
        {"empty profile", [](Case& c) { c.profile.clear(); }},
        {"behind and before changed", [](Case& c) { c.profile.resize(1, -1, 1); }},
        {"the last ridges are missing", [](Case& c) { c.profile.trimX(NAN, 30); }},
        {"a flank is missing", [](Case& c) { c.removeFlank(2); }},
        {"heights of NaN", [](Case& c) { c.profile.resize(1, NAN, 1); }},
        {"all at one x", [](Case& c) { c.profile.resize(0, 1, 1); }},
        {"apexes of NaN", [](Case& c) { c.apexes = c.trueApexes(), c.apexes[3].setX(std::nan("")); }},
        {"apexes of one place", [](Case& c) { c.apexes = QList<QPointF>(8, QPointF(1, 1)); }},
    };
    for (const auto& [description, change] : kCases) {
        SCOPED_TRACE(description);
        Case c;
        change(c);
        c.expectRefusal();
    }
}

TEST(Calibration, RefusesWhatIsTooUncertain) {
    const auto attempt = [](double beta, double gamma, double noise, int points) {
        const kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(2, 500.0);
        kxsim::Pose pose = kxsim::nominalCalibrationPose(2, object);
        pose.origin = pose.origin + 250.0 * pose.v();
        pose.beta = 180 + beta;
        pose.gamma = gamma;
        pose.origin = pose.origin - 250.0 * pose.v();
        const kxsim::CalibrationSensor sensor{.points = points, .noise = noise};
        int done = 0;
        for (std::uint64_t i = 0; i < 20; ++i) {
            kxsim::Random random({8, i});
            const kxsim::CalibrationTrial trial = kxsim::tryCalibration(object, 2, pose, sensor, random);
            done += trial.isDone ? 1 : 0;
            EXPECT_LE(trial.angleError, 0.1) << beta << ' ' << gamma << ' ' << noise << ' ' << points;
        }
        return done;
    };
    EXPECT_EQ(attempt(45, 27, 0.02, 1280), 20);
    EXPECT_EQ(attempt(45, 27, 0.3, 1280), 0) << "noise";
    EXPECT_EQ(attempt(45, 27, 0.1, 200) + attempt(45, 27, 0.02, 60), 0) << "few points";
    EXPECT_EQ(attempt(2, 27, 0.02, 1280), 0) << "along the ridges";
    for (const double noise : {0.0, 0.02}) { // where a sign is not told, or the noise grows without bound
        for (const double gamma : {0.0, 0.01, 0.1}) {
            EXPECT_LE(attempt(45, gamma, noise, 1280), noise == 0 && gamma > 0.05 ? 20 : 0) << "gamma near 0";
            EXPECT_EQ(attempt(90, gamma, noise, 1280), 0) << "beta 90";
        }
        EXPECT_EQ(attempt(89.99, 27, noise, 1280), 0) << "beta near 90";
    }
}

TEST(Calibration, ProfilesThatEndAboutTheObliqueCrest) {
    int hidden = 0;
    for (std::uint64_t i = 0; i < 300; ++i) {
        kxsim::Random random({11, i});
        kxsim::CalibrationObject object = KxInspect::calibrationObjectFor(4, 500.0);
        object.slope = 0.58; // noise alone makes a crest on a flank that lies across the line of sight
        const kxsim::Pose pose{{164.0, 669.0, -10.0}, -3.0, 221.0, -36.0};
        const kxsim::CalibrationSensor sensor{.fan = random.uniform(38, 44)};
        const kxsim::CalibrationTrial trial = kxsim::tryCalibration(object, 4, pose, sensor, random);
        hidden += trial.isInView ? 0 : 1;
        EXPECT_LE(trial.pointError, 0.3) << "fan of " << sensor.fan << " degrees";
    }
    EXPECT_GT(hidden, 100);
}

TEST(Calibration, ChanceShapesAreNoObject) {
    std::mt19937 engine(9);
    std::uniform_real_distribution<float> uniform(0, 1);
    int withApexes = 0;
    for (int round = 0; round < 300; ++round) {
        Case c;
        // Seven or more apexes at random about those of the object.
        float x = -60, y = 250;
        c.profile.clear();
        for (int flank = 0; flank < 10; ++flank) {
            const float width = 8 + 16 * uniform(engine);
            const float slope = (flank % 2 == 0 ? -1.0f : 1.0f) * (0.5f + 1.5f * uniform(engine));
            for (float step = 0; step < width; step += 0.1f) {
                c.profile.points.append(KxPointXY(x + step, y + slope * step));
            }
            x += width;
            y += slope * width;
        }
        InputLog input;
        input.add(c.profile.points);
        const RoundReport report(9, round, input);
        EXPECT_FALSE(c.run());
        withApexes += c.dbg.apexCount >= 7 ? 1 : 0;
    }
    EXPECT_GT(withApexes, 200);
}

TEST(Calibration, ReportsWhatItFoundWhateverTheNumber) {
    Case c;
    c.profile.clear();
    for (const int count : {0, 1, 2, 10, 11, 12, 45}) {
        SCOPED_TRACE(count);
        c.apexes.clear();
        for (int i = 0; i < count; ++i) {
            const int column = i / 5;
            c.apexes.append(QPointF(column, i));
        }
        c.expectRefusal();
        const int shown = std::min(count, 10);
        EXPECT_EQ(c.dbg.apexCount, shown);
        for (int i = 0; i < shown; ++i) {
            EXPECT_EXACT(exact(c.dbg.apexX[i], c.dbg.apexY[i]), exact(i / 5, i));
        }
        for (int i = std::max(0, count - 1); i <= shown; ++i) {
            EXPECT_TRUE(std::isnan(c.dbg.lineK[i]) && std::isnan(c.dbg.lineB[i])) << "line " << i;
        }
    }
    c.apexes.clear();
    c.profile.points = pointsFor(1600, [](int i) { return at(i, std::abs(i % 100 - 50)); }); // 15 teeth
    c.expectRefusal();
    EXPECT_EQ(c.dbg.apexCount, 10);
    for (int i = 0; i <= 10; ++i) {
        EXPECT_NEAR(std::abs(c.dbg.lineK[i]), 1.0f, 0.01f) << "line " << i;
    }
}
