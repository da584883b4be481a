// The command: its options, its files, and what it says when something is wrong.
#include "kxmath/toolRun.h"

#include <QtCore/QSettings>

namespace {

using namespace tool_test;

const QStringList kQuick = {"pass", "--cars", "1", "--rate", "500", "--points", "100"};

class SimulateCommand : public ToolTest {
protected:
    SimulateCommand() : ToolTest("simulate") {}
};

TEST_F(SimulateCommand, WritesWhatTheOptionsSay) {
    const ToolResult result =
        run(kQuick + QStringList{"--seed", "18446744073709551615", "--prefix", "line5", "--serial1", "7", "--alpha",
                                 "-38", "--flat", "2:1:60", "--build-up", "3:2:1.5:-4"});
    EXPECT_EQ(result.errors, QByteArray()) << "no progress where there is no terminal";
    EXPECT_EQ(QDir(path("pass")).entryList(QDir::Files | QDir::Hidden, QDir::Name),
              (QStringList{"defects.ini", "line5_102.bin", "line5_7.bin", "settings.ini", "truth.json"}));
    const QJsonValue truth = readJson("pass/truth.json");
    EXPECT_EQ(truth["parameters"]["seed"].toString(), "18446744073709551615");
    EXPECT_EQ(truth["sensors"][1]["pose"]["alpha"].toDouble(), -38.0);
    EXPECT_EQ(truth["pairs"][1]["wheels"][0]["defects"][0]["length"].toDouble(), 60.0);
    EXPECT_EQ(truth["pairs"][2]["wheels"][1]["defects"][0]["height"].toDouble(), 1.5);
    EXPECT_EQ(truth["pairs"][2]["wheels"][1]["defects"][0]["phase"].toDouble(), -4.0);
    EXPECT_EQ(QSettings(path("pass/settings.ini"), QSettings::IniFormat).value("SENSOR1/SN").toInt(), 7);
    EXPECT_TRUE(run({"--help"}).output.startsWith("Usage: kxmath simulate DIR [options]"));
}

TEST_F(SimulateCommand, Refuses) {
    expectRefusals({
        {{}, 2, "1 DIR needed, got 0"},
        {{"pass", "--no-such"}, 2, "no-such"},
        {{"pass", "--points", "99.5"}, 2, "--points needs a whole number from 16 to 65535, got '99.5'"},
        {{"pass", "--points", "1000000"}, 2, "--points needs a whole number from 16 to 65535, got '1000000'"},
        {{"pass", "--noise", "nan"}, 2, "--noise needs a number from 0 to 10, got 'nan'"},
        {{"pass", "--seed", "-1"}, 2, "--seed needs a whole number from 0 to 18446744073709551615, got '-1'"},
        {{"pass", "--records", "csv"}, 2, "--records needs one of profile, cloud, got 'csv'"},
        {{"pass", "--flat", "1:1"}, 2, "--flat needs PAIR:SENSOR:SIZE[:PHASE], got '1:1'"},
        {{"pass", "--flat", "9:1:60"}, 2, "wheel pair 9 of 8"},
        {{"pass", "--build-up", "1:3:1"}, 2, "sensor 3"},
        {{"pass", "--flat", "1:1:nan"}, 2, "size nan"},
        {{"pass", "--prefix", "a_b"}, 2, "--prefix"},
        {{"pass", "--serial1", "102"}, 2, "serial numbers of the two sensors are equal"},
        {{"pass", "--axle-spacing", "600"}, 2, "axles are too close"},
        {{"pass", "--wear", "150"}, 2, "--wear"},
        {{"pass", "--min-range", "700"}, 2, "--min-range"},
        {{"pass", "--calibration", "2", "--cars", "3"}, 2, "--cars has no meaning with"},
        {{"pass", "--pitch", "20"}, 2, "--pitch has no meaning without"},
        {{"pass", "--calibration", "2", "--turn", "1,2"}, 2, "--turn needs 3 numbers"},
        {{"pass", "--calibration", "2", "--profiles", "0"}, 2, "--profiles"},
        {{"pass", "--calibration", "left"}, 2, "--calibration"},
    });
    EXPECT_TRUE(QDir(path("")).isEmpty()) << "nothing is written";
}

TEST_F(SimulateCommand, ReportsWhatItCannotWrite) {
    for (const QString name : {"train_101.bin", "train_102.bin", "settings.ini", "defects.ini", "truth.json"}) {
        QDir(path("pass")).removeRecursively();
        QDir(path("pass")).mkpath(name);
        expectRefusal({kQuick, 4, name.toLatin1()});
        EXPECT_FALSE(QFileInfo(path("pass/truth.json")).isFile()) << "truth.json stands for a whole pass";
    }
    // The shell ignores the signal of an exceeded limit, so the write fails as on a full disk.
    const QString line = "trap '' XFSZ; ulimit -f 100; \"$KXMATH\" simulate full --cars 1 --rate 500";
    EXPECT_TRUE(runShell(path(""), line, 4).errors.contains("train_101.bin"));
}

} // namespace
