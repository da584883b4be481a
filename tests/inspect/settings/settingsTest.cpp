// Settings of a station and of the judgement of treads, from files and from programs.
#include "kxmath/trainRecordings.h"
#include "support/tempFiles.h"

#include <KxInspect/Error.h>
#include <KxInspect/Train.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace KxInspect;
using testing_support::TempFiles;

class Settings : public testing::Test, public TempFiles {
protected:
    StationSettings station(const QByteArray& text) const {
        return readStationSettings(write("s.ini", text).toStdString());
    }
    DefectSettings defects(const QByteArray& text) const {
        return readDefectSettings(write("d.ini", text).toStdString());
    }
    /// Two recordings of the sensors 1001 and 1002 with one wheel each.
    std::vector<std::string> recordings() const {
        const QByteArray bytes = tool_test::recording({0.5f}, tool_test::RecordKind::ProfileRecords);
        return {write("a_1001.bin", bytes).toStdString(), write("b_1002.bin", bytes).toStdString()};
    }
};

void expectError(const std::function<void()>& call, ErrorKind kind, const std::string& key, const std::string& reason) {
    try {
        call();
        ADD_FAILURE() << "no error: " << reason;
    } catch (const Error& error) {
        EXPECT_EQ(error.kind(), kind) << error.what();
        EXPECT_EQ(error.source().key, key);
        EXPECT_NE(error.reason().find(reason), std::string::npos) << error.what();
    }
}

TEST_F(Settings, AllKeysHaveTheirValues) {
    const StationSettings s =
        station("calibrLines2=1359.5\nminProfsInWheel=-3\n"
                "[SENSOR1]\nSN=7\nlevel_k=0.5\nlevel_b=1\nlowlevel_k=2\nlowlevel_b=3\nk2=4\nb2=5\n"
                "wndSize=6\nhigherPoinInWnd=8\nmaxdY=9.5\nminPointsIn=10\nmaxCorr=11.75\nparts=12.5\n"
                "maxDist=13.5\n[SENSOR2]\nSN=9\n[SENSOR4]\nSN=10\n");
    EXPECT_EQ(s.file, path("s.ini").toStdString());
    EXPECT_EQ(s.baseDistance, 1359.5f);
    EXPECT_EQ(s.minProfilesInWheel, -3);
    ASSERT_EQ(s.sensors.size(), 2u) << "SENSOR3 is missing and ends the list";
    const SensorSettings& first = *findSensor(s, 7);
    EXPECT_EQ(first.number, 1);
    EXPECT_EQ(first.level, (Line{0.5f, 1.0f}));
    EXPECT_EQ(first.low, (Line{2.0f, 3.0f}));
    EXPECT_EQ(first.reference, (Line{4.0f, 5.0f}));
    const WheelDetection& d = first.detection;
    EXPECT_EQ(std::tuple(d.noiseWindow, d.maxJumps, d.maxJump, d.minPoints, d.maxGap),
              std::tuple(6, 8, 9.5f, 10, 13.5f));
    EXPECT_EQ(std::tuple(d.maxParts, d.maxCorrelation), std::tuple(11, 12.0f)) << "the core reads whole numbers";
    const SensorSettings& second = *findSensor(s, 9);
    EXPECT_FALSE(second.level || second.low || second.reference);
    EXPECT_EQ(std::tuple(second.detection.noiseWindow, second.detection.minPoints), std::tuple(3, 2));
    EXPECT_EQ(findSensor(s, 10), nullptr);
    EXPECT_EQ(s.faults.size(), 6u) << "the lines of the second sensor";

    const DefectSettings t =
        defects("maxDeviation=0.25\npointsHigher=6\nminimalDefectsProf=2\nmaxRadiusDeviation=0.15\n"
                "radiusProfiles=4\n[SENSOR1]\nSN=7\nlevel_k=1\nlevel_b=2\nlowLevel_k=3\nlowLevel_b=4\n");
    const DefectLimits& l = t.limits;
    EXPECT_EQ(std::tuple(l.maxDeviation, l.pointsHigher, l.minProfiles, l.maxRadiusDeviation, l.radiusProfiles),
              std::tuple(0.25f, 6, 2, 0.15f, 4));
    EXPECT_EQ(findSensor(t, 7)->high, (Line{1.0f, 2.0f}));
    EXPECT_EQ(findSensor(t, 7)->low, (Line{3.0f, 4.0f}));
}

TEST_F(Settings, FilesThatCannotBeReadAndWrongLimits) {
    expectError([&] { readStationSettings(path("none.ini").toStdString()); }, ErrorKind::NotFound, "", "do not exist");
    expectError([&] { readDefectSettings(path(".").toStdString()); }, ErrorKind::Unsuitable, "", "are not a file");
    expectError([&] { station("no ini\nfile [at all"); }, ErrorKind::Damaged, "", "cannot be parsed");
    expectError([&] { defects("maxDeviation=much\n"); }, ErrorKind::Unsuitable, "maxDeviation", "hold no number in");
    expectError([&] { defects("radiusProfiles=1.5\n"); }, ErrorKind::Unsuitable, "radiusProfiles", "no whole number");
}

TEST_F(Settings, FaultsCountWhereTheirKeysAreNeeded) {
    const std::vector<std::string> files = recordings();
    const QByteArray text = tool_test::trainSettings();
    const auto measure = [&](const QByteArray& settings, int mode = 0) {
        PassOptions options;
        options.mode = mode;
        return measurePass(files, station(settings), options).distances();
    };
    EXPECT_EQ(measure(text + "[SENSOR3]\nSN=x\nlevel_k=y\n"), 1) << "nobody needs SENSOR3";
    const QByteArray noLow = QByteArray(text).replace("lowlevel_b=10", "lowlevel_b=low");
    EXPECT_EQ(measure(noLow), 1);
    expectError([&] { measure(noLow, 3); }, ErrorKind::Unsuitable, "SENSOR1/lowlevel_b", "hold no number");
    const QByteArray noBase = QByteArray(text).replace("calibrLines2=1360", "");
    expectError([&] { measure(noBase); }, ErrorKind::Unsuitable, "calibrLines2", "lack the key");
    const QByteArray noSerial = QByteArray(text).replace("SN=1002", "SN=x");
    expectError([&] { measure(noSerial); }, ErrorKind::Unsuitable, "SENSOR2/SN", "no whole number");
}

TEST_F(Settings, ProgramsFillThemIn) {
    const std::vector<std::string> files = recordings();
    StationSettings settings;
    settings.baseDistance = 1000.0f;
    settings.sensors.resize(2);
    for (const int i : {0, 1}) {
        SensorSettings& sensor = settings.sensors[static_cast<size_t>(i)];
        sensor.number = 2 - i; // the order of the sensors is no matter
        sensor.serial = 1002 - i;
        sensor.level = Line{0.0f, 100.0f};
        sensor.reference = Line{0.0f, 50.0f};
        sensor.detection.minPoints = 5;
    }
    const PassResult result = measurePass(files, settings);
    ASSERT_EQ(result.pairs.size(), 1u);
    EXPECT_EQ(result.pairs[0].distance, 1001.0f);
    EXPECT_EQ(result.sides[0].sensor, 1);
    EXPECT_EQ(result.settings, "");
    settings.sensors[1].reference.reset();
    expectError([&] { checkPass(files, settings); }, ErrorKind::Unsuitable, "SENSOR1/k2", "lack the key 'SENSOR1/k2'");
    settings.sensors.pop_back();
    expectError([&] { checkPass(files, settings); }, ErrorKind::Unsuitable, "",
                "no sensor with the serial number 1001");
}

TEST_F(Settings, OptionsOfAPassAreChecked) {
    const std::vector<std::string> files = recordings();
    const StationSettings settings = station(tool_test::trainSettings());
    const auto check = [&](const std::vector<std::string>& recordings, float tolerance, std::vector<int> shown) {
        PassOptions options;
        options.tolerance = tolerance;
        options.shownPairs = std::move(shown);
        checkPass(recordings, settings, options);
    };
    expectError([&] { check({files[0]}, 1.0f, {}); }, ErrorKind::BadArgument, "", "two recordings, not 1");
    expectError(
        [&] {
            check({files[0], files[0]}, 1.0f, {});
        },
        ErrorKind::BadArgument, "", "both recordings are named");
    expectError([&] { check(files, -1.0f, {}); }, ErrorKind::BadArgument, "", "must not be negative");
    expectError([&] { check(files, std::nanf(""), {}); }, ErrorKind::BadArgument, "", "must not be negative");
    expectError([&] { check(files, 1.0f, {2, 0}); }, ErrorKind::BadArgument, "", "no pair 0");
    EXPECT_NO_THROW(check(files, 0.0f, {99}));
}

} // namespace
