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

} // namespace
