// kxmath train where it must refuse: one line on stderr, the right exit code, nothing left behind.
#include "tools/toolRun.h"
#include "tools/trainRecordings.h"

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

#include <functional>

namespace {

using namespace tool_test;

struct Case {
    const char* desc;
    std::function<void(const QDir&)> prepare; ///< changes the good files
    QStringList arguments; ///< behind "train"; empty for those of a good run
    int exitCode;
    QByteArray message; ///< part of the line on stderr
};

const QStringList kGood = {"left_1001.bin", "right_1002.bin", "--settings", "s.ini", "--out", "results"};

QStringList with(const QStringList& more) {
    return kGood + more;
}

void change(const QDir& dir, const char* from, const char* to) {
    writeFile(dir.filePath("s.ini"), trainSettings().replace(from, to));
}

std::function<void(const QDir&)> settingsWith(const char* from, const char* to) {
    return [=](const QDir& dir) { change(dir, from, to); };
}

QByteArray goodRecording() {
    return recording({0.0f, 0.5f}, RecordKind::CloudSections);
}

/// Runs each case in a fresh folder with good files.
void check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        const QTemporaryDir folder;
        const QDir dir(folder.path());
        writeFile(dir.filePath("left_1001.bin"), goodRecording());
        writeFile(dir.filePath("right_1002.bin"), goodRecording());
        writeFile(dir.filePath("s.ini"), trainSettings());
        dir.mkdir("results");
        if (c.prepare) {
            c.prepare(dir);
        }
        const QStringList before = dir.entryList(QDir::AllEntries);
        const ToolResult run =
            runTool(dir.path(), QStringList("train") + (c.arguments.isEmpty() ? kGood : c.arguments));
        EXPECT_EQ(run.exitCode, c.exitCode);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors.count('\n'), 1) << run.errors.toStdString();
        EXPECT_TRUE(run.errors.startsWith("kxmath train: ")) << run.errors.toStdString();
        EXPECT_TRUE(run.errors.contains(c.message)) << run.errors.toStdString();
        EXPECT_EQ(dir.entryList(QDir::AllEntries), before);
        EXPECT_TRUE(QDir(dir.filePath("results")).isEmpty());
    }
}

TEST(TrainErrors, WrongUse) {
    check({
        {"no arguments", {}, {"--mode", "1"}, 2, "two recordings"},
        {"one recording", {}, {"left_1001.bin", "--settings", "s.ini"}, 2, "two recordings"},
        {"no settings", {}, {"left_1001.bin", "right_1002.bin"}, 2, "--settings"},
        {"unknown option", {}, with({"--modus", "3"}), 2, "modus"},
        {"mode is no number", {}, with({"--mode", "three"}), 2, "--mode"},
        {"tolerance is NaN", {}, with({"--tolerance", "nan"}), 2, "--tolerance"},
        {"tolerance is negative", {}, with({"--tolerance", "-1"}), 2, "--tolerance"},
        {"wheel 0", {}, with({"--wheel", "0"}), 2, "--wheel"},
        {"output is an input", {}, with({"--json", "./s.ini"}), 2, "s.ini"},
        {"two outputs in one", {}, with({"--json", "-", "--csv", "-"}), 2, "--csv"},
        {"one recording twice", {}, {"left_1001.bin", "left_1001.bin", "--settings", "s.ini"}, 2, "left_1001.bin"},
        {"two recordings of one name",
         [](const QDir& dir) {
             dir.mkdir("other");
             writeFile(dir.filePath("other/left_1001.bin"), goodRecording());
         },
         {"left_1001.bin", "other/left_1001.bin", "--settings", "s.ini"},
         2,
         "both recordings are named"},
        {"two recordings of one sensor",
         [](const QDir& dir) { writeFile(dir.filePath("b_1001.bin"), goodRecording()); },
         {"left_1001.bin", "b_1001.bin", "--settings", "s.ini"},
         2,
         "1001"},
    });
}

TEST(TrainErrors, Recordings) {
    const auto left = [](const QByteArray& content) {
        return [=](const QDir& dir) { writeFile(dir.filePath("left_1001.bin"), content); };
    };
    const auto named = [](const char* name) {
        return [=](const QDir& dir) { QFile::rename(dir.filePath("left_1001.bin"), dir.filePath(name)); };
    };
    const QByteArray good = goodRecording();
    const QByteArray size = QByteArray::number(good.size());
    const QByteArray cutAt = "at byte " + QByteArray::number(20 * 163) + ", after 20 whole records";
    check({
        {"missing", [](const QDir& dir) { QFile::remove(dir.filePath("left_1001.bin")); }, {}, 3, "does not exist"},
        {"missing, with a line break in its name",
         {},
         {"a\nb_1001.bin", "right_1002.bin", "--settings", "s.ini"},
         3,
         "a?b"},
        {"a folder", {}, {"results", "right_1002.bin", "--settings", "s.ini"}, 3, "not a file"},
        {"empty", left(""), {}, 3, "is empty"},
        {"no record at all", left("hello"), {}, 3, "at byte 0, after 0 whole records: no record begins with 0x68"},
        {"garbage behind the records", left(good + '\7'), {}, 3, "at byte " + size + ", after"},
        {"cut in a point", left(good.left(20 * 163 + 50)), {}, 3, cutAt},
        {"cut behind the type byte", left(good.left(20 * 163 + 1)), {}, 3, cutAt},
        {"no serial number", named("left.bin"), {"left.bin", "right_1002.bin", "--settings", "s.ini"}, 3, "no serial"},
        {"text behind the number",
         named("a_1001b.bin"),
         {"a_1001b.bin", "right_1002.bin", "--settings", "s.ini"},
         3,
         "1001b"},
        {"serial after the first _",
         named("a_b_1001.bin"),
         {"a_b_1001.bin", "right_1002.bin", "--settings", "s.ini"},
         3,
         "b_1001"},
        {"unknown serial",
         named("a_7.bin"),
         {"a_7.bin", "right_1002.bin", "--settings", "s.ini"},
         3,
         "serial number 7"},
    });
}

TEST(TrainErrors, Settings) {
    check({
        {"missing", [](const QDir& dir) { QFile::remove(dir.filePath("s.ini")); }, {}, 3, "do not exist"},
        {"no INI file",
         [](const QDir& dir) { writeFile(dir.filePath("s.ini"), "no ini\nfile [at all"); },
         {},
         3,
         "parsed"},
        {"empty", [](const QDir& dir) { writeFile(dir.filePath("s.ini"), ""); }, {}, 3, "SENSOR1/SN"},
        {"second serial missing", settingsWith("SN=1002", ""), {}, 3, "serial number 1002"},
        {"search ended by a 0", settingsWith("SN=1001", "SN=0"), {}, 3, "serial number 1001"},
        {"third sensor", settingsWith("[SENSOR2]\nSN=1002", "[SENSOR2]\nSN=5\n[SENSOR3]\nSN=1002"), {}, 3, "SENSOR3"},
        {"serial is no number", settingsWith("SN=1001", "SN=left"), {}, 3, "SENSOR1/SN"},
        {"no base distance", settingsWith("calibrLines2=1360", ""), {}, 3, "calibrLines2"},
        {"no level",
         settingsWith("level_b=100\nk2=0\nb2=50\nlowlevel_k=0\nlowlevel_b=10\nminPointsIn=5\n[S", "[S"),
         {},
         3,
         "SENSOR1/level_b"},
        {"no reference line", settingsWith("b2=50", ""), {}, 3, "SENSOR1/b2"},
        {"no low line in mode 3", settingsWith("lowlevel_k=0", ""), with({"--mode", "3"}), 3, "SENSOR1/lowlevel_k"},
        {"comma in a number", settingsWith("b2=50", "b2=50,5"), {}, 3, "SENSOR1/b2"},
        {"a count with a point", settingsWith("minPointsIn=5", "minPointsIn=5.5"), {}, 3, "SENSOR1/minPointsIn"},
        {"NaN", settingsWith("k2=0", "k2=nan"), {}, 3, "SENSOR1/k2"},
    });
}

TEST(TrainErrors, Outputs) {
    check({
        {"folder of the report missing", {}, with({"--report", "nowhere/r.html"}), 4, "nowhere/r.html"},
        {"output is a folder", {}, with({"--csv", "results"}), 4, "results"},
        {"--out is a file",
         {},
         {"left_1001.bin", "right_1002.bin", "--settings", "s.ini", "--out", "s.ini"},
         4,
         "s.ini"},
        {"--out cannot be made",
         {},
         {"left_1001.bin", "right_1002.bin", "--settings", "s.ini", "--out", "/proc/x/y"},
         4,
         "/proc/x/y"},
    });
}

TEST(TrainErrors, NoResult) {
    const QByteArray empty = recording({SeenWheel(), SeenWheel()}, RecordKind::CloudSections);
    check({
        {"no wheels",
         [=](const QDir& dir) {
             writeFile(dir.filePath("left_1001.bin"), empty);
             writeFile(dir.filePath("right_1002.bin"), empty);
         },
         {},
         1,
         "0 wheels in 'left_1001.bin', 0 in 'right_1002.bin'"},
        {"wheels on one side",
         [=](const QDir& dir) { writeFile(dir.filePath("right_1002.bin"), empty); },
         {},
         1,
         "2 wheels in 'left_1001.bin', 0"},
        {"too few points for a line",
         [](const QDir& dir) {
             const QByteArray few = recording({0.0f}, RecordKind::CloudSections, 5);
             writeFile(dir.filePath("left_1001.bin"), few);
             writeFile(dir.filePath("right_1002.bin"), few);
             change(dir, "minPointsIn=5", "minPointsIn=2");
         },
         {},
         1,
         "1 wheels in 'left_1001.bin', 1 in 'right_1002.bin', none of them"},
    });
}

/// A full disk, played by a limit for the size of files.
TEST(TrainErrors, FullDisk) {
    const QTemporaryDir folder;
    const QDir dir(folder.path());
    for (const char* const name : {"left_1001.bin", "right_1002.bin"}) {
        writeFile(dir.filePath(name), recording({0.0f, 0.5f}, RecordKind::CloudSections, 400));
    }
    writeFile(dir.filePath("s.ini"), trainSettings());
    dir.mkdir("results");
    const QString run = "\"$KXMATH\" train left_1001.bin right_1002.bin --settings s.ini --out results";
    for (const char* const limit : {"0", "2"}) { // blocks: nothing fits, the settings fit but no wheel does
        SCOPED_TRACE(limit);
        const ToolResult result = runShell(dir.path(), QStringLiteral("trap '' XFSZ; ulimit -f %1; ").arg(limit) + run);
        EXPECT_EQ(result.exitCode, 4);
        EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.toStdString();
        EXPECT_TRUE(QDir(dir.filePath("results")).isEmpty());
    }
    const ToolResult table = runTool(dir.path(), QStringList("train") + kGood, "/dev/full");
    EXPECT_EQ(table.exitCode, 4);
    EXPECT_EQ(table.errors.count('\n'), 1) << table.errors.toStdString();
}

} // namespace
