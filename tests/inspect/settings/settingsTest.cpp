// Settings of a station and of the judgement of treads, from files and from programs.
#include "inspect/inspectSupport.h"
#include "kxmath/trainRecordings.h"
#include "support/tempFiles.h"

#include <KxInspect/Train.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace {

using namespace KxInspect;
using namespace inspect_test;
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

TEST_F(Settings, AllKeysHaveTheirValues) {
    const StationSettings s =
        station("calibrLines2=1359.5\nminProfsInWheel=7\n"
                "[SENSOR1]\nSN=7\nlevel_k=0.5\nlevel_b=1\nlowlevel_k=2\nlowlevel_b=3\nk2=4\nb2=5\n"
                "wndSize=6\nhigherPoinInWnd=8\nmaxdY=9.5\nminPointsIn=10\nmaxCorr=11.75\nparts=12.5\n"
                "maxDist=13.5\n[SENSOR2]\nSN=9\n[SENSOR4]\nSN=10\n");
    EXPECT_EQ(s.file, path("s.ini").toStdString());
    EXPECT_EQ(s.baseDistance, 1359.5f);
    EXPECT_EQ(s.minProfilesInWheel, 7);
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

TEST_F(Settings, TheTableHoldsTheDefaults) {
    const StationSettings s = station("[SENSOR1]\nSN=7\n");
    const DefectSettings t = defects("");
    const WheelDetection& d = s.sensors[0].detection;
    const DefectLimits& l = t.limits;
    const std::map<std::string, double> found = {{"minProfsInWheel", s.minProfilesInWheel},
                                                 {"wndSize", d.noiseWindow},
                                                 {"higherPoinInWnd", d.maxJumps},
                                                 {"maxdY", d.maxJump},
                                                 {"minPointsIn", d.minPoints},
                                                 {"maxCorr", d.maxParts},
                                                 {"parts", d.maxCorrelation},
                                                 {"maxDist", d.maxGap},
                                                 {"maxDeviation", l.maxDeviation},
                                                 {"pointsHigher", l.pointsHigher},
                                                 {"minimalDefectsProf", l.minProfiles},
                                                 {"maxRadiusDeviation", l.maxRadiusDeviation},
                                                 {"radiusProfiles", l.radiusProfiles}};
    std::map<std::string, double> inTable;
    for (const SettingKey& key : settingKeys()) {
        EXPECT_LT(key.min, key.max) << key.name;
        EXPECT_FALSE(key.meaning.empty()) << key.name;
        if (key.byDefault) {
            inTable[key.name] = *key.byDefault;
            EXPECT_TRUE(key.min <= *key.byDefault && *key.byDefault <= key.max) << key.name;
        }
    }
    EXPECT_EQ(inTable, found);
}

TEST_F(Settings, ValuesOutOfRangeAreFaults) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"calibrLines2=1.36", "calibrLines2",
         "give 1.36 mm for 'calibrLines2', which is outside 100 to 10000 mm: is it in metres?"},
        {"calibrLines2=1360000", "calibrLines2", "which is outside 100 to 10000 mm: is it in micrometres?"},
        {"minProfsInWheel=-5", "minProfsInWheel",
         "give -5 profiles for 'minProfsInWheel', which is outside 0 to 100000 profiles"},
        {"[SENSOR1]\nSN=7\nk2=-40", "SENSOR1/k2",
         "give -40 for 'SENSOR1/k2', which is outside -20 to 20: is it an angle in degrees?"},
        {"[SENSOR1]\nSN=7\nlevel_b=10000.5", "SENSOR1/level_b", "which is outside -10000 to 10000 mm"},
        {"[SENSOR1]\nSN=7\nminPointsIn=65536", "SENSOR1/minPointsIn", "give 65536 points"},
        {"[SENSOR1]\nSN=-7", "SENSOR1/SN", "give -7 for"},
        {"[SENSOR1]\nSN=7\nside=up", "SENSOR1/side", "give 'up' for 'SENSOR1/side', which is left or right"},
    };
    for (const auto& [text, expectedKey, reason] : cases) {
        const std::string key = expectedKey;
        const std::vector<SettingFault> faults = station(text).faults;
        const auto fault = std::find_if(faults.begin(), faults.end(), [&](const auto& f) { return f.key == key; });
        ASSERT_NE(fault, faults.end()) << key;
        EXPECT_NE(fault->reason.find(reason), std::string::npos) << fault->reason;
    }
    const char* const atTheLimits[] = {"calibrLines2=100", "calibrLines2=10000",
                                       "calibrLines2=1360\nminProfsInWheel=0"};
    for (const char* const text : atTheLimits) {
        EXPECT_EQ(station(text).faults.size(), 1u) << text << ": only the serial number is missing";
    }
    expectError([&] { defects("maxDeviation=200\n"); }, ErrorKind::Unsuitable, "maxDeviation", "in micrometres?");
    expectError([&] { defects("radiusProfiles=-10\n"); }, ErrorKind::Unsuitable, "radiusProfiles", "1 to 100000");
}

TEST_F(Settings, UnknownKeysNameTheNearestKnownOne) {
    const std::pair<const char*, const char*> cases[] = {
        {"minProfInWheel=4", "unknown key 'minProfInWheel', which is not read: is 'minProfsInWheel' meant?"},
        {"[SENSOR2]\nminPointsln=4",
         "unknown key 'SENSOR2/minPointsln', which is not read: is 'SENSOR2/minPointsIn' meant?"},
        {"[SENSOR2]\nmaxDeviation=1", "'SENSOR2/maxDeviation', which is not read: it belongs before the sections"},
        {"k2=1", "'k2', which is not read: it belongs in the section of a sensor"},
        {"[SENSOR1]\nkey=1", "unknown key 'SENSOR1/key', which is not read"},
        {"[Sensor1]\nk2=1\nb2=2", "unknown section [Sensor1], which is not read: is [SENSOR1] to [SENSOR49] meant?"},
        {"[window]\nwidth=1\nheight=2", "unknown section [window], which is not read"},
        {"calibrLines2=1360\nuse=1\npolynomDegree=20\nradiusProfiles=3\n[SENSOR3]\nlowLevel_k=1\nlowlevel_k=1\nx=1\n"
         "gamma=2\nposition=3",
         ""},
    };
    for (const auto& [text, warning] : cases) {
        for (const auto& found : {station(text).warnings, defects(text).warnings}) {
            ASSERT_EQ(found.size(), *warning == '\0' ? 0u : 1u) << text;
            EXPECT_TRUE(found.empty() || found[0].find(warning) != std::string::npos) << found[0];
            const bool hasAdvice = !found.empty() && found[0].find("not read:") != std::string::npos;
            EXPECT_EQ(hasAdvice, std::string(warning).find("not read:") != std::string::npos) << text;
        }
    }
}

TEST_F(Settings, LinesThatDoNotFitTheRecordingsAreWarnings) {
    const std::vector<std::string> files = recordings(); // wheels at y = 62.5, background at 180, slope 0
    const QByteArray good = tool_test::trainSettings();
    const qsizetype second = good.indexOf("[SENSOR2]");
    const std::tuple<const char*, const char*, std::vector<const char*>> cases[] = {
        {"level_b=125", "level_b=125", {}},
        {"level_b=125",
         "level_b=40",
         {"no point is below the level line of SENSOR2, y = 0 x + 40: 0 of ", "y is 62.5 to 180 mm"}},
        {"level_b=125", "level_b=201", {"all points are below the level line of SENSOR2"}},
        {"minPointsIn=6", "minPointsIn=60", {"no wheel was found with the level line of SENSOR2, y = 0 x + 125: "}},
        {"k2=0", "k2=0.06", {"stand at 3.4 degrees to the reference line of SENSOR2, more than 3: k2 is 0.06"}},
        {"k2=0", "k2=-0.05", {}},
    };
    for (const auto& [from, to, expected] : cases) {
        SCOPED_TRACE(to);
        const QByteArray changed = good.left(second) + good.mid(second).replace(from, to);
        std::vector<std::string> found;
        for (const std::string& warning : measurePass(files, station(changed)).warnings) {
            if (warning.find("different numbers of wheels") == std::string::npos) {
                found.push_back(warning);
            }
        }
        ASSERT_EQ(found.size(), expected.empty() ? 0u : 1u);
        for (const char* const part : expected) {
            EXPECT_NE(found[0].find(part), std::string::npos) << found[0];
            EXPECT_NE(found[0].find("b_1002.bin"), std::string::npos) << found[0];
        }
    }
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
        sensor.level = Line{0.0f, 100.0f + 20.0f * static_cast<float>(i)};
        sensor.reference = Line{0.0f, 62.0f - 3.0f * static_cast<float>(i)}; // 0.5 and 3.5 mm below the wheel
        sensor.detection.minPoints = 5 + i;
    }
    const PassResult result = measurePass(files, settings);
    ASSERT_EQ(result.pairs.size(), 1u);
    EXPECT_EQ(result.pairs[0].distance, 1004.0f);
    EXPECT_EQ(result.sides[0].sensor, 1);
    EXPECT_EQ(result.settings, "");
    StationSettings wrong = settings;
    wrong.baseDistance = 1.36f;
    expectError([&] { checkPass(files, wrong); }, ErrorKind::Unsuitable, "calibrLines2", "is it in metres?");
    wrong = settings;
    wrong.sensors.push_back(wrong.sensors[0]);
    wrong.sensors[2].number = 9;
    expectError([&] { checkPass(files, wrong); }, ErrorKind::Unsuitable, "SENSOR9/SN",
                "give the serial number 1002 to SENSOR2 and to SENSOR9");
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
