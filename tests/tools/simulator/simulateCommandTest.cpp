// The command: its options, its files, and what it says when something is wrong.
#include "passSupport.h"
#include "toolRun.h"

#include <gtest/gtest.h>

using namespace simulator_test;
using tool_test::runTool;
using tool_test::ToolResult;

namespace {

const QStringList kQuick = {"simulate", "pass", "--cars", "1", "--rate", "500", "--points", "100"};

} // namespace

TEST(SimulateCommand, WritesWhatTheOptionsSay) {
    const QTemporaryDir folder;
    const ToolResult run = runTool(folder.path(), kQuick + QStringList{"--seed", "18446744073709551615", "--prefix",
                                                                       "line5", "--serial1", "7", "--alpha", "-38",
                                                                       "--flat", "2:1:60", "--build-up", "3:2:1.5:-4"});
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.errors, QByteArray()) << "no progress where there is no terminal";
    const QDir dir(folder.filePath("pass"));
    EXPECT_EQ(dir.entryList(QDir::Files | QDir::Hidden, QDir::Name),
              (QStringList{"defects.ini", "line5_102.bin", "line5_7.bin", "settings.ini", "truth.json"}));
    const QJsonObject truth = QJsonDocument::fromJson(readAll(dir.filePath("truth.json"))).object();
    EXPECT_EQ(truth["parameters"]["seed"].toString(), "18446744073709551615");
    EXPECT_EQ(truth["sensors"][1]["pose"]["beta"].toDouble(), -90.0);
    EXPECT_EQ(truth["sensors"][1]["pose"]["alpha"].toDouble(), -38.0);
    const auto defect = [&](int pair, int wheel) { return truth["pairs"][pair]["wheels"][wheel]["defects"][0]; };
    EXPECT_EQ(defect(1, 0)["length"].toDouble(), 60.0);
    EXPECT_EQ(defect(2, 1)["height"].toDouble(), 1.5);
    EXPECT_EQ(defect(2, 1)["phase"].toDouble(), -4.0);
    const QSettings settings(dir.filePath("settings.ini"), QSettings::IniFormat);
    EXPECT_EQ(settings.value("SENSOR1/SN").toInt(), 7);
}

TEST(SimulateCommand, RefusesWrongUse) {
    const struct {
        QStringList arguments;
        const char* said;
    } cases[] = {
        {{}, "one DIR is needed"},
        {{"pass", "another"}, "one DIR is needed"},
        {{"pass", "--no-such"}, "no-such"},
        {{"pass", "--points", "many"}, "--points 'many' is no whole number"},
        {{"pass", "--points", "99.5"}, "--points '99.5' is no whole number"},
        {{"pass", "--points", "1000000"}, "--points 1e+06 is not within"},
        {{"pass", "--noise", "nan"}, "--noise nan is not within"},
        {{"pass", "--speed", "-1"}, "--speed -1 is not within"},
        {{"pass", "--seed", "-1"}, "--seed '-1'"},
        {{"pass", "--records", "csv"}, "neither 'profile' nor 'cloud'"},
        {{"pass", "--flat", "1:1"}, "--flat '1:1' is not PAIR:SENSOR:SIZE"},
        {{"pass", "--flat", "9:1:60"}, "wheel pair 9 of 8"},
        {{"pass", "--build-up", "1:3:1"}, "sensor 3"},
        {{"pass", "--flat", "1:1:nan"}, "size nan"},
        {{"pass", "--prefix", "a_b"}, "--prefix"},
        {{"pass", "--serial1", "102"}, "serial numbers of the two sensors are equal"},
        {{"pass", "--axle-spacing", "600"}, "axles are too close"},
        {{"pass", "--car-length", "13000"}, "axles are too close"},
        {{"pass", "--wear", "150"}, "--wear"},
        {{"pass", "--min-range", "700"}, "--min-range"},
    };
    const QTemporaryDir folder;
    for (const auto& c : cases) {
        const ToolResult run = runTool(folder.path(), QStringList{"simulate"} + c.arguments);
        EXPECT_EQ(run.exitCode, 2) << c.said;
        EXPECT_TRUE(run.errors.contains(c.said)) << c.said << " is not in " << run.errors.toStdString();
        EXPECT_EQ(run.errors.count('\n'), 1) << run.errors.toStdString();
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty()) << "nothing is written";
}

TEST(SimulateCommand, TellsWhatItCannotWrite) {
    for (const char* const blocked : {"pass", "pass/train_101.bin", "pass/train_102.bin", "pass/settings.ini",
                                      "pass/defects.ini", "pass/truth.json"}) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(blocked);
        if (qstrcmp(blocked, "pass") == 0) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        } else {
            ASSERT_TRUE(QDir().mkpath(path));
        }
        const ToolResult run = runTool(folder.path(), kQuick);
        EXPECT_EQ(run.exitCode, 4) << blocked;
        EXPECT_TRUE(run.errors.contains(blocked)) << run.errors.toStdString();
        EXPECT_EQ(run.errors.count('\n'), 1) << run.errors.toStdString();
        EXPECT_FALSE(QFileInfo(folder.filePath("pass/truth.json")).isFile()) << "truth.json stands for a whole pass";
    }
}

TEST(SimulateCommand, NoticesAFullDisk) {
    const QTemporaryDir folder;
    // The shell ignores the signal of an exceeded limit, so the write fails as on a full disk.
    const ToolResult run = tool_test::runShell(
        folder.path(), "trap '' XFSZ; ulimit -f 100; \"$KXMATH\" simulate pass --cars 1 --rate 500");
    EXPECT_EQ(run.exitCode, 4);
    EXPECT_TRUE(run.errors.contains("train_101.bin")) << run.errors.toStdString();
}

TEST(SimulateCommand, HelpNamesTheCommand) {
    const ToolResult run = runTool(".", {"simulate", "--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.output.startsWith("Usage: kxmath simulate DIR [options]")) << run.output.toStdString();
    EXPECT_TRUE(run.output.contains("--back-to-back"));
}
