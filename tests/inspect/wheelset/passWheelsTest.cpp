// The measures of the wheels of simulated passes, from sensors between the rails and outside.
#include "simulator/random.h"
#include "simulator/simulation.h"
#include "simulator/train.h"
#include "simulator/wheelContour.h"
#include "simulator/wornRim.h"
#include "support/tempFiles.h"

#include <KxInspect/Error.h>
#include <KxInspect/Train.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

using namespace KxInspect;
using testing_support::TempFiles;

/// A pass of one car by four sensors, simulated once.
class PassWheels : public testing::Test {
protected:
    static void SetUpTestSuite() {
        files_ = new TempFiles;
        parameters_ = new kxsim::Parameters;
        kxsim::Parameters& p = *parameters_;
        p.seed = 21;
        p.cars = 1;
        p.rate = 1200.0;
        p.treadWear = 3.0;
        p.yawSpread = 1.5;
        p.layout = {{101, true, kxsim::SensorPlace::Inner},
                    {102, false, kxsim::SensorPlace::Inner},
                    {103, true, kxsim::SensorPlace::Field, 400.0},
                    {104, false, kxsim::SensorPlace::Field, -250.0}};
        kxsim::simulatePass(p, files_->path(""), {});
    }
    static void TearDownTestSuite() {
        delete files_;
        delete parameters_;
    }

    static std::string path(const QString& name) { return files_->path(name).toStdString(); }
    static std::vector<std::string> recordings(const std::vector<int>& serials) {
        std::vector<std::string> paths;
        paths.reserve(serials.size());
        for (const int serial : serials) {
            paths.push_back(path(QStringLiteral("train_%1.bin").arg(serial)));
        }
        return paths;
    }
    static StationSettings settings() { return readStationSettings(path("settings.ini")); }
    static PassResult measure(const std::vector<int>& serials) { return measurePass(recordings(serials), settings()); }

    static double truthOf(const PassWheelMeasures& wheel, PassMeasure measure) {
        const kxsim::Train train = kxsim::makeTrain(*parameters_);
        const auto& pair = train.pairs.at(static_cast<std::size_t>(wheel.pair - 1));
        const kxsim::Wheel& w = pair.wheels.at(wheel.side == TrackSide::Left ? 0 : 1);
        const kxsim::RimTruth rim = kxsim::trueMeasures(kxsim::rimOf(w.contour, w.shape.diameter));
        const double values[] = {w.shape.diameter, rim.height, rim.thickness, rim.flangeSlope, rim.hollow, rim.width};
        return values[static_cast<std::size_t>(measure)];
    }

    static TempFiles* files_;
    static kxsim::Parameters* parameters_;
};

TempFiles* PassWheels::files_ = nullptr;
kxsim::Parameters* PassWheels::parameters_ = nullptr;

std::vector<std::string> keysOf(const SensorShare& share) {
    std::vector<std::string> keys;
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        if (share.measures[static_cast<std::size_t>(info.measure)]) {
            keys.emplace_back(info.key);
        }
    }
    return keys;
}

TEST_F(PassWheels, FourSensorsMeasureEverything) {
    const PassResult result = measurePass(recordingsIn(path(""), settings()), settings());
    EXPECT_EQ(result.distances(), 4);
    EXPECT_EQ(result.further.size(), 2U);
    ASSERT_EQ(result.wheels.size(), 8U);
    int held = 0;
    for (const PassWheelMeasures& wheel : result.wheels) {
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            const PassValue& value = wheel[info.measure];
            ASSERT_TRUE(value.value) << info.key << ": " << value.reason;
            const double truth = truthOf(wheel, info.measure);
            // Noise of 0.05 mm; the diameter is that of an arc of 50 degrees. docs/train.md has the errors of many passes.
            const double allowed = info.measure == PassMeasure::Diameter ? 0.1 : 0.05;
            EXPECT_NEAR(static_cast<double>(*value.value), truth, allowed) << info.key << " of pair " << wheel.pair;
            held += value.interval.holds(static_cast<float>(truth)) ? 1 : 0;
        }
        ASSERT_EQ(wheel.sensors.size(), 2U);
        EXPECT_FALSE(wheel.sensors[0].isOnFieldSide);
        EXPECT_EQ(keysOf(wheel.sensors[0]).front(), "diameter");
        EXPECT_TRUE(wheel.sensors[1].measures[static_cast<std::size_t>(PassMeasure::FlangeSlope)]);
        EXPECT_FALSE(wheel.sensors[0].measures[static_cast<std::size_t>(PassMeasure::FlangeSlope)]);
    }
    EXPECT_GE(held, 40); // of 48 intervals, with 95 %: fewer in one of 500 samples
    const std::string json = toJson(result, Pictures::Included);
    EXPECT_EQ(toJson(passFromJson(json), Pictures::Included), json);
}

TEST_F(PassWheels, TwoSensorsSayWhatTheyDoNotSee) {
    const PassResult result = measure({101, 102});
    EXPECT_EQ(result.warnings.size(), 2U); // no recordings of the other two
    int heights = 0; // high flanges hide the tape circle
    for (const PassWheelMeasures& wheel : result.wheels) {
        const PassValue& height = wheel[PassMeasure::FlangeHeight];
        heights += height.value ? 1 : 0;
        EXPECT_TRUE(height.value || height.reason == "the profile has a gap at the tape circle") << height.reason;
        const PassValue& thickness = wheel[PassMeasure::FlangeThickness];
        EXPECT_FALSE(thickness.value || thickness.interval.isKnown());
        const std::string field = wheel.side == TrackSide::Left ? "SENSOR3" : "SENSOR4";
        EXPECT_EQ(thickness.reason, "no sensor between the rails sees the front of the flange, which faces outwards; " +
                                        field + " on the field side: no recording of this sensor was given");
        EXPECT_EQ(wheel.sensors[1].reason, "no recording of this sensor was given");
    }
    EXPECT_GE(heights, 6);
}

TEST_F(PassWheels, WithoutSidesThereAreNone) {
    StationSettings plain = settings();
    for (SensorSettings& sensor : plain.sensors) {
        sensor.side.reset();
    }
    const PassResult result = measurePass(recordings({101, 102}), plain);
    EXPECT_TRUE(result.wheels.empty() && result.warnings.empty());
    EXPECT_THROW(measurePass(recordings({101, 102, 103}), plain), Error);
}

TEST_F(PassWheels, OneRecordingMayFail) {
    const PassResult whole = measure({101, 102, 103, 104});
    const QByteArray bytes = files_->read("train_104.bin");
    files_->write("cut_104.bin", bytes.left(bytes.size() / 2));
    std::vector<std::string> names = recordings({101, 102, 103});
    names.push_back(path("cut_104.bin"));
    const PassResult cut = measurePass(names, settings());
    QFile::remove(files_->path("cut_104.bin"));
    ASSERT_EQ(cut.warnings.size(), 1U);
    EXPECT_NE(cut.warnings[0].find("recording 'cut_104.bin' is damaged at byte"), std::string::npos);
    ASSERT_EQ(cut.wheels.size(), whole.wheels.size());
    for (std::size_t i = 0; i < cut.wheels.size(); ++i) {
        const bool isRight = cut.wheels[i].side == TrackSide::Right;
        EXPECT_EQ(cut.wheels[i][PassMeasure::FlangeThickness].value.has_value(), !isRight);
        if (!isRight) {
            EXPECT_EQ(cut.wheels[i][PassMeasure::Diameter].value, whole.wheels[i][PassMeasure::Diameter].value);
        }
    }

    // Of those that face each other: no distances, but the wheels of the other side, and what they have in JSON.
    const PassResult half =
        measurePass({path("gone_101.bin"), path("train_102.bin"), path("train_104.bin")}, settings());
    EXPECT_EQ(half.distances(), 0);
    EXPECT_TRUE(half.hasResult());
    EXPECT_EQ(half.pairs.front().reason, "recording 'gone_101.bin' does not exist");
    for (const PassWheelMeasures& wheel : half.wheels) {
        EXPECT_EQ(wheel[PassMeasure::Diameter].value.has_value(), wheel.side == TrackSide::Right);
        EXPECT_EQ(wheel[PassMeasure::Diameter].reason.empty(), wheel.side == TrackSide::Right);
    }
    EXPECT_EQ(toJson(passFromJson(toJson(half))), toJson(half));
    EXPECT_THROW(measure({103, 104, 105}), Error); // not in the settings
    EXPECT_THROW(measure({103, 104}), Error); // none between the rails
}

TEST_F(PassWheels, PosesThatDoNotFitEachOtherAreAWarning) {
    StationSettings moved = settings();
    moved.sensors[2].origin->y += 0.6; // outwards, on the left
    const PassResult result = measurePass(recordings({101, 102, 103, 104}), moved);
    EXPECT_EQ(result.warnings.size(), 4U);
    for (const std::string& warning : result.warnings) {
        EXPECT_NE(warning.find("mm farther outwards by SENSOR3 than by SENSOR1: their poses do not fit each other"),
                  std::string::npos)
            << warning;
    }
    // Stored uncertainties say what is allowed: 0.6 mm are within those of 0.5 mm each, and beyond those of 0.2 mm.
    for (const double y : {0.5, 0.2}) {
        for (SensorSettings& sensor : moved.sensors) {
            sensor.poseUncertainty = {0.0, y, 0.0, 0.0, 0.0, 0.0};
        }
        const PassResult known = measurePass(recordings({101, 102, 103, 104}), moved);
        ASSERT_EQ(known.warnings.size(), y > 0.4 ? 0U : 4U);
        EXPECT_TRUE(y > 0.4 ||
                    known.warnings[0].find("by their uncertainties they may be 0.29 mm apart") != std::string::npos);
    }
    moved.sensors[0].origin.reset();
    const PassResult without = measurePass(recordings({101, 102, 103, 104}), moved);
    EXPECT_EQ(without.wheels.front().sensors.front().reason,
              "the settings hold no pose of SENSOR1 (x, y, z, alpha, beta, gamma)");
}

/// Moves the poses by errors that are normal, with uncertainties to both sides with 95 %.
void drawPoses(StationSettings& settings, const PoseUncertainty& uncertainty, kxsim::Random& random) {
    const auto off = [&](double& value, double by) { value += random.normal() * by / 1.96; };
    for (SensorSettings& sensor : settings.sensors) {
        off(sensor.origin->x, uncertainty.x);
        off(sensor.origin->y, uncertainty.y);
        off(sensor.origin->z, uncertainty.z);
        off(sensor.angles->alpha, uncertainty.alpha);
        off(sensor.angles->beta, uncertainty.beta);
        off(sensor.angles->gamma, uncertainty.gamma);
    }
}

/// The same recordings are measured with poses that are off: what differs is what these make, since the noise is the same.
/// build-release/tools/tables/passWheels counts how often whole intervals hold the truth.
TEST(PassWheelPoses, MakeWhatTheirPartOfTheIntervalsSays) {
    const TempFiles files;
    kxsim::Parameters p;
    p.seed = 5;
    p.cars = 1;
    p.bogies = 1;
    p.rate = 1000.0;
    p.points = 900;
    p.layout = {{101, true, kxsim::SensorPlace::Inner},
                {102, false, kxsim::SensorPlace::Inner},
                {103, true, kxsim::SensorPlace::Field, 400.0},
                {104, false, kxsim::SensorPlace::Field, 400.0}};
    kxsim::simulatePass(p, files.path(""), {});
    const StationSettings exact = readStationSettings(files.path("settings.ini").toStdString());
    const std::vector<std::string> recordings = recordingsIn(files.path("").toStdString(), exact);
    const PoseUncertainty uncertainty{0.1, 0.08, 0.1, 0.02, 0.03, 0.025};
    StationSettings known = exact;
    for (SensorSettings& sensor : known.sensors) {
        sensor.poseUncertainty = uncertainty;
    }
    const PassResult measured = measurePass(recordings, known);
    const PassResult plain = measurePass(recordings, exact);
    ASSERT_GE(measured.wheels.size(), 2U);
    constexpr int kDraws = 60; // of two sides, which are independent
    kxsim::Random random({9, 1});
    std::array<int, kPassMeasures> held = {};
    std::array<double, kPassMeasures> squares = {};
    for (int draw = 0; draw < kDraws; ++draw) {
        StationSettings settings = exact;
        drawPoses(settings, uncertainty, random);
        const PassResult result = measurePass(recordings, settings);
        ASSERT_EQ(result.wheels.size(), measured.wheels.size());
        for (std::size_t i = 0; i < 2; ++i) { // the other axle has the same poses
            for (std::size_t m = 0; m < kPassMeasures; ++m) {
                const PassValue& value = measured.wheels[i].values[m];
                const PassValue& off = result.wheels[i].values[m];
                ASSERT_TRUE(value.byPoses && off.value);
                held[m] += value.interval.holds(*off.value) ? 1 : 0;
                squares[m] += std::pow(static_cast<double>(*off.value - *value.value), 2.0) / (2.0 * kDraws);
            }
        }
    }
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        const auto m = static_cast<std::size_t>(info.measure);
        // With 95 %, less than one of 1,000 samples of 120 has fewer than 105.
        EXPECT_GE(held[m], 105) << info.key;
        if (info.measure == PassMeasure::FlangeThickness || info.measure == PassMeasure::RimWidth) {
            // Poses decide these. The root of a mean square of 120 values is known to 7 %.
            EXPECT_NEAR(static_cast<double>(*measured.wheels[0].values[m].byPoses) / 1.96, std::sqrt(squares[m]),
                        0.22 * std::sqrt(squares[m]))
                << info.key;
        }
        const PassValue& with = measured.wheels[0][info.measure];
        const PassValue& without = plain.wheels[0][info.measure];
        EXPECT_EQ(with.value, without.value);
        EXPECT_FALSE(without.byPoses);
        EXPECT_STREQ(whatIntervalHolds(without), "noise only");
        EXPECT_NEAR(with.interval.high - *with.value, std::hypot(without.interval.high - *with.value, *with.byPoses),
                    1e-4F)
            << info.key;
    }
}

TEST_F(PassWheels, NominalContourIsAlignedAtFlangeBackAndTapeCircle) {
    // The new contour that the worn wheels were made from: higher by what the tape circle lost, and nowhere above it.
    CrossSection contour;
    contour.profile = Profile();
    for (int i = 0; i <= 1350; ++i) {
        const float x = static_cast<float>(i) / 10.0f;
        contour.profile->points.push_back(
            {x, 28.0f - static_cast<float>(kxsim::s1002Height(static_cast<double>(x) - 70.0))});
    }
    PassOptions options;
    options.contour = contour;
    const PassResult result = measurePass(recordings({101, 102, 103, 104}), settings(), options);
    ASSERT_TRUE(result.contour);
    EXPECT_NEAR(static_cast<double>(result.contour->flangeHeight), 28.0, 0.01);
    const std::string json = toJson(result, Pictures::Included);
    EXPECT_EQ(toJson(passFromJson(json), Pictures::Included), json);
    for (const PassWheelMeasures& wheel : result.wheels) {
        const double worn = truthOf(wheel, PassMeasure::FlangeHeight) - 28.0;
        float tip = -10.0f;
        float atTape = 10.0f;
        for (const Point& p : wheel.deviations) {
            tip = p.x > 12.0f && p.x < 18.0f ? std::max(tip, p.y) : tip;
            atTape = std::abs(p.x - 70.0f) < 0.2f ? p.y : atTape;
        }
        EXPECT_NEAR(static_cast<double>(atTape), 0.0, 0.05);
        EXPECT_NEAR(static_cast<double>(tip), worn, 0.06) << "the tip stands out by what the tape circle lost";
    }
}

} // namespace
