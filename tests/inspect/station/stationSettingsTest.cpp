// Settings files of a station: new ones, fitted ones, and what a check says of them.
#include "kxmath/trainRecordings.h"
#include "support/tempFiles.h"

#include <KxInspect/Error.h>
#include <KxInspect/StationSetup.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;

class StationFile : public testing::Test, public testing_support::TempFiles {
protected:
    SettingsCheck check(const std::string& text, SettingsKind kind = SettingsKind::Station,
                        const std::vector<std::string>& recordings = {}, int mode = 0) {
        const QString name = QStringLiteral("s%1.ini").arg(++files_); // QSettings caches by name
        return checkSettings(write(name, QByteArray::fromStdString(text)).toStdString(), kind, recordings, mode);
    }
    std::string recordingOf(const char* name, const QByteArray& bytes) const {
        return write(name, bytes).toStdString();
    }

private:
    int files_ = 0;
};

/// A fit as it might come out, with other numbers for everything.
StationFit someFit() {
    StationFit fit;
    fit.baseDistance = 1361.25f;
    fit.baseUncertainty = 0.0625f;
    fit.minProfilesInWheel = 9;
    for (const int n : {1, 2}) {
        const auto f = static_cast<float>(n);
        FittedSensor sensor;
        sensor.number = n;
        sensor.serial = 300 + n;
        sensor.reference = Line{0.25f * f, 140.5f + f};
        sensor.level = Line{0.25f * f, 150.5f + f};
        sensor.low = Line{0.25f * f, 120.5f + f};
        sensor.treadHigh = Line{0.25f * f, 340.5f + f};
        sensor.treadLow = Line{0.25f * f, 190.5f + f};
        sensor.detection.minPoints = 30 + n;
        fit.sensors.push_back(sensor);
    }
    return fit;
}

std::vector<std::string> refusedKeys(const SettingsCheck& check) {
    std::vector<std::string> keys;
    for (const SettingsFinding& finding : check.findings) {
        EXPECT_TRUE(finding.isRefused) << finding.text;
        keys.push_back(finding.key);
    }
    return keys;
}

TEST_F(StationFile, ANewOneLacksOnlyWhatTheUserKnows) {
    for (const SettingsKind kind : {SettingsKind::Station, SettingsKind::Defects}) {
        const bool isStation = kind == SettingsKind::Station;
        std::vector<std::string> expected =
            isStation ? std::vector<std::string>{"calibrLines2"} : std::vector<std::string>{};
        for (const char* const section : {"SENSOR1/", "SENSOR2/"}) {
            for (const char* const key :
                 {"level_k", "level_b", isStation ? "k2" : "lowLevel_k", isStation ? "b2" : "lowLevel_b"}) {
                expected.push_back(std::string(section) + key);
            }
        }
        EXPECT_EQ(refusedKeys(check(newSettings(kind, {301, 302}), kind)), expected);
        expected.insert(expected.end(), {"SENSOR1/SN", "SENSOR2/SN"});
        std::vector<std::string> found = refusedKeys(check(newSettings(kind), kind));
        std::sort(found.begin(), found.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(found, expected) << "without serial numbers";
        EXPECT_TRUE(check(withFit(newSettings(kind), someFit(), kind), kind).findings.empty());
    }
    EXPECT_THROW(newSettings(SettingsKind::Station, {5, 5}), Error);
}

TEST_F(StationFile, AFitKeepsWhatItDoesNotKnow) {
    const std::string old = "; ours\r\ncalibrLines2=1\r\nuse=1\r\n[SENSOR1]\r\nSN=302\r\nk2 = 9\r\nmaxDist=7\r\n"
                            "\r\n[other]\r\nb2=5\r\n";
    const std::string text = withFit(old, someFit(), SettingsKind::Station, "old.ini");
    const StationSettings read = readStationSettings(write("new.ini", QByteArray::fromStdString(text)).toStdString());
    EXPECT_EQ(read.baseDistance, 1361.25f);
    EXPECT_EQ(read.baseUncertainty, 0.0625f);
    EXPECT_EQ(read.minProfilesInWheel, 9);
    const SensorSettings& first = *findSensor(read, 302);
    EXPECT_EQ(first.number, 1) << "the number that the file gives to the serial number";
    EXPECT_EQ(first.reference, (Line{0.5f, 142.5f}));
    EXPECT_EQ(first.level, (Line{0.5f, 152.5f}));
    EXPECT_EQ(first.low, (Line{0.5f, 122.5f}));
    EXPECT_EQ(first.detection.minPoints, 32);
    EXPECT_EQ(first.detection.maxGap, 7.0f);
    EXPECT_EQ(findSensor(read, 301)->number, 2);
    for (const char* const kept : {"; ours\r\n", "use=1\r\n", "maxDist=7\r\n", "\r\n[other]\r\nb2=5\r\n"}) {
        EXPECT_NE(text.find(kept), std::string::npos) << kept;
    }
    EXPECT_EQ(withFit(text, someFit(), SettingsKind::Station), text) << "a second time changes nothing";
    StationFit unknown = someFit();
    unknown.baseUncertainty = std::numeric_limits<float>::quiet_NaN(); // that of the fit before would be wrong
    const std::string without = withFit(text, unknown, SettingsKind::Station);
    EXPECT_NE(without.find(";baseUncertainty=\r\n"), std::string::npos) << without;
    EXPECT_EQ(withFit(without, someFit(), SettingsKind::Station), text);
    const DefectSettings treads = readDefectSettings(
        write("d.ini", QByteArray::fromStdString(withFit({}, someFit(), SettingsKind::Defects))).toStdString());
    EXPECT_EQ(findSensor(treads, 302)->high, (Line{0.5f, 342.5f}));
    EXPECT_EQ(findSensor(treads, 302)->low, (Line{0.5f, 192.5f}));
    EXPECT_THROW(withFit("[SENSOR1]\nSN=7\n[SENSOR2]\nSN=8\n", someFit(), SettingsKind::Station), Error);
}

struct Case {
    const char* description;
    QByteArray from; ///< replaced in good settings
    QByteArray to;
    bool isRefused;
    const char* text; ///< part of the only finding
};

TEST_F(StationFile, ACheckNamesEachFault) {
    const std::vector<Case> cases = {
        {"metres", "calibrLines2=1360", "calibrLines2=1.36", true, "is it in metres?"},
        {"a misspelled key", "minProfsInWheel", "minProfInWheel", false, "is 'minProfsInWheel' meant?"},
        {"two of one number", "SN=1002", "SN=1001", true, "give the serial number 1001 to SENSOR1 and to SENSOR2"},
        {"no number", "level_b=100", "level_b=a", true, "hold no number in 'SENSOR1/level_b'"},
        {"crossed lines", "level_b=100", "level_b=40", false,
         "the level line of SENSOR1 is not beyond the reference line at x = 0: 40 and 50 mm"},
    };
    const QByteArray good = tool_test::trainSettings();
    EXPECT_TRUE(check(good.toStdString()).findings.empty());
    for (const Case& c : cases) {
        QByteArray text = good;
        text.replace(text.indexOf(c.from), c.from.size(), c.to);
        const SettingsCheck result = check(text.toStdString());
        ASSERT_EQ(result.findings.size(), 1u) << c.description;
        EXPECT_EQ(result.findings[0].isRefused, c.isRefused) << c.description;
        EXPECT_NE(result.findings[0].text.find(c.text), std::string::npos) << result.findings[0].text;
    }
    QByteArray withoutLow = good;
    withoutLow.replace("lowlevel_k=0\nlowlevel_b=10\n", "").replace("lowlevel_k=0\nlowlevel_b=16\n", "");
    EXPECT_TRUE(check(withoutLow.toStdString()).findings.empty());
    EXPECT_EQ(refusedKeys(check(withoutLow.toStdString(), SettingsKind::Station, {}, 3)).size(), 4u) << "mode 3";
}

TEST_F(StationFile, ACheckComparesWithRecordings) {
    using tool_test::RecordKind;
    const std::string first = recordingOf("a_1001.bin", tool_test::recording({0.5f, 1.0f}, RecordKind::CloudSections));
    const std::string second =
        recordingOf("b_1002.bin", tool_test::recording({0.25f, 2.0f}, RecordKind::ProfileRecords));
    const std::string stranger = recordingOf("c_1003.bin", tool_test::recording({0.5f}, RecordKind::ProfileRecords));
    const std::string good = tool_test::trainSettings().toStdString();
    const auto changed = [&](const char* from, const char* to) {
        return QByteArray::fromStdString(good).replace(from, to).toStdString();
    };
    const SettingsCheck fits = check(good, SettingsKind::Station, {first, second});
    EXPECT_TRUE(fits.findings.empty()) << fits.findings.front().text;
    EXPECT_NE(fits.facts.back().find("2 distances of 2 wheel pairs, median 1363.00"), std::string::npos);
    const std::vector<std::tuple<std::string, std::vector<std::string>, bool, const char*>> cases = {
        {good, {stranger}, true, "name no sensor with the serial number 1003"},
        {changed("level_b=100", "level_b=50.25"), {first}, false, "no point is below the level line"},
        {changed("level_b=125", "level_b=300"), {second}, false, "all points are below the level line"},
        {changed("minProfsInWheel=5", "minProfsInWheel=50"), {first}, false, "a run of 10 records"},
        {changed("calibrLines2=1360", "calibrLines2=1360\n"),
         {first, recordingOf("d_1002.bin", tool_test::recording({0.5f, std::nullopt}, RecordKind::ProfileRecords))},
         false,
         "different numbers of wheels"},
        {changed("b2=50", "b2=20"), {first, second}, false, "mm off the base distance"},
    };
    for (const auto& [text, recordings, isRefused, part] : cases) {
        const SettingsCheck result = check(text, SettingsKind::Station, recordings);
        const auto found =
            std::find_if(result.findings.begin(), result.findings.end(),
                         [&, part = part](const auto& f) { return f.text.find(part) != std::string::npos; });
        ASSERT_NE(found, result.findings.end())
            << part << "; first: " << (result.findings.empty() ? "none" : result.findings[0].text);
        EXPECT_EQ(found->isRefused, isRefused) << part;
    }
    EXPECT_THROW(check(good, SettingsKind::Station, {path("none_1001.bin").toStdString()}), Error);
}

} // namespace
