// kxmath train where it must refuse: one line on stderr, the right exit code, nothing left behind.
#include "kxmath/toolRun.h"
#include "kxmath/trainRecordings.h"

namespace {

using namespace tool_test;

class TrainErrors : public ToolTest {
protected:
    TrainErrors() : ToolTest("train") {
        QDir(path("")).mkdir("results");
        writeAll(good_, good_, trainSettings());
    }

    void writeAll(const QByteArray& left, const QByteArray& right, const QByteArray& settings) const {
        write("left_1001.bin", left);
        write("right_1002.bin", right);
        write("s.ini", settings);
    }

    static QStringList with(const QStringList& more, const QString& left = "left_1001.bin") {
        return QStringList{left, "right_1002.bin", "--settings", "s.ini", "--out", "results"} + more;
    }

    void expectNothingLeft(const Refusal& refusal) const {
        const QStringList before = QDir(path("")).entryList(QDir::AllEntries);
        expectRefusal(refusal);
        EXPECT_EQ(QDir(path("")).entryList(QDir::AllEntries), before);
        EXPECT_TRUE(QDir(path("results")).isEmpty());
    }

    const QByteArray good_ = recording({0.0f, 0.5f}, RecordKind::CloudSections);
};

TEST_F(TrainErrors, WrongUseAndOutputs) {
    QDir(path("")).mkdir("other");
    write("other/left_1001.bin", good_);
    write("b_1001.bin", good_);
    const std::vector<Refusal> cases = {
        {{"--mode", "1"}, 2, "2 recordings needed, got 0"},
        {{"left_1001.bin", "--settings", "s.ini"}, 2, "2 recordings needed, got 1"},
        {{"left_1001.bin", "right_1002.bin"}, 2, "--settings"},
        {with({"--modus", "3"}), 2, "modus"},
        {with({"--mode", "three"}), 2, "--mode"},
        {with({"--tolerance", "nan"}), 2, "--tolerance"},
        {with({"--tolerance", "-1"}), 2, "--tolerance"},
        {with({"--wheel", "0"}), 2, "--wheel"},
        {with({"--json", "./s.ini"}), 2, "s.ini"},
        {with({"--json", "-", "--csv", "-"}), 2, "--csv"},
        {{"left_1001.bin", "left_1001.bin", "--settings", "s.ini"}, 2, "left_1001.bin"},
        {{"left_1001.bin", "other/left_1001.bin", "--settings", "s.ini"}, 2, "both recordings are named"},
        {{"left_1001.bin", "b_1001.bin", "--settings", "s.ini"}, 2, "1001"},
        {with({"--report", "nowhere/r.html"}), 4, "nowhere/r.html"},
        {with({"--csv", "results"}), 4, "results"},
        {with({"--out", "s.ini"}), 4, "s.ini"},
        {with({"--out", "/proc/x/y"}), 4, "/proc/x/y"},
    };
    for (const Refusal& c : cases) {
        expectNothingLeft(c);
    }
}

TEST_F(TrainErrors, Recordings) {
    const QByteArray cutAt = "at byte " + QByteArray::number(20 * 163) + ", after 20 whole records";
    const std::tuple<QString, QByteArray, QByteArray> cases[] = {
        {"left_1001.bin", "", "is empty"},
        {"left_1001.bin", "hello", "at byte 0, after 0 whole records: no record begins with 0x68"},
        {"left_1001.bin", good_ + '\7', "at byte " + QByteArray::number(good_.size()) + ", after"},
        {"left_1001.bin", good_.left(20 * 163 + 50), cutAt},
        {"left_1001.bin", good_.left(20 * 163 + 1), cutAt},
        {"left.bin", good_, "no serial"},
        {"a_1001b.bin", good_, "1001b"},
        {"a_b_1001.bin", good_, "b_1001"}, // the serial number begins behind the first _
        {"a_7.bin", good_, "serial number 7"},
    };
    for (const auto& [name, content, message] : cases) {
        write(name, content);
        expectNothingLeft({with({}, name), 3, message});
    }
    expectNothingLeft({with({}, "gone_1001.bin"), 3, "does not exist"});
    expectNothingLeft({with({}, "a\nb_1001.bin"), 3, "a?b"});
    expectNothingLeft({with({}, "results"), 3, "not a file"});
}

TEST_F(TrainErrors, Settings) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"[SENSOR1]", "no ini\nfile [at all", "parsed"},
        {"SN=1002", "", "serial number 1002"},
        {"SN=1001", "SN=0", "serial number 1001"}, // the search ends there
        {"[SENSOR2]\nSN=1002", "[SENSOR2]\nSN=5\n[SENSOR3]\nSN=1002", "SENSOR3"},
        {"SN=1001", "SN=left", "SENSOR1/SN"},
        {"calibrLines2=1360", "", "calibrLines2"},
        {"\nlevel_b=100", "", "SENSOR1/level_b"},
        {"b2=50", "", "SENSOR1/b2"},
        {"lowlevel_k=0", "", "SENSOR1/lowlevel_k"}, // needed in mode 3
        {"b2=50", "b2=50,5", "SENSOR1/b2"},
        {"minPointsIn=5", "minPointsIn=5.5", "SENSOR1/minPointsIn"},
        {"calibrLines2=1360", "calibrLines2=1.36", "1.36 mm for 'calibrLines2', which is outside 100 to 10000 mm"},
        {"minProfsInWheel=5", "minProfsInWheel=-5", "-5 profiles for 'minProfsInWheel'"},
        {"SN=1002", "SN=1001", "give the serial number 1001 to SENSOR1 and to SENSOR2"},
        {"k2=0", "k2=nan", "SENSOR1/k2"},
    };
    for (const auto& [from, to, message] : cases) {
        write("s.ini", trainSettings().replace(from, to));
        expectNothingLeft({with({"--mode", "3"}), 3, message});
    }
    expectNothingLeft({with({"--settings", "gone.ini"}), 3, "do not exist"});
}

TEST_F(TrainErrors, NoResult) {
    const QByteArray none = recording({SeenWheel(), SeenWheel()}, RecordKind::CloudSections);
    writeAll(none, none, trainSettings());
    // What the recordings show of the level line comes first.
    const auto expectNone = [&](const std::vector<const char*>& lines, const QByteArray& output) {
        const ToolResult result = run(with({}), 1);
        const QList<QByteArray> errors = result.errors.trimmed().split('\n');
        ASSERT_EQ(errors.size(), static_cast<qsizetype>(lines.size())) << result.errors.toStdString();
        for (size_t i = 0; i < lines.size(); ++i) {
            EXPECT_TRUE(errors[static_cast<qsizetype>(i)].contains(lines[i])) << result.errors.toStdString();
        }
        EXPECT_TRUE(output.isEmpty() ? result.output.isEmpty() : result.output.endsWith(output))
            << result.output.toStdString();
        EXPECT_TRUE(QDir(path("results")).isEmpty());
    };
    expectNone({"'left_1001.bin': no point is below the level line of SENSOR1",
                "'right_1002.bin': no point is below the level line of SENSOR2",
                "0 wheels in 'left_1001.bin', 0 in 'right_1002.bin'"},
               "");
    writeAll(good_, none, trainSettings());
    expectNone({"'right_1002.bin': no point is below the level line of SENSOR2", "different numbers of wheels",
                "2 wheels in 'left_1001.bin', 0"},
               "0 of 2 distances measured.\nNot judged, pairs 1-2: the sensor of side 2 did not see the wheel.\n");
    const QByteArray few = recording({0.0f}, RecordKind::CloudSections, 5); // too few points for a line
    writeAll(few, few, trainSettings().replace("minPointsIn=5", "minPointsIn=2"));
    expectNone({"1 wheels in 'left_1001.bin', 1 in 'right_1002.bin', none of them"},
               "Not judged, pair 1: the points of a chosen profile give no line.\n");
}

/// A full disk, played by a limit for the size of files.
TEST_F(TrainErrors, FullDisk) {
    const QByteArray large = recording({0.0f, 0.5f}, RecordKind::CloudSections, 400);
    writeAll(large, large, trainSettings());
    const QString line = "trap '' XFSZ; ulimit -f %1; \"$KXMATH\" train " + with({}).join(' ');
    for (const int blocks : {0, 2}) { // nothing fits, the settings fit but no wheel does
        EXPECT_EQ(runShell(path(""), line.arg(blocks), 4).errors.count('\n'), 1);
        EXPECT_TRUE(QDir(path("results")).isEmpty());
    }
    runTool(path(""), QStringList("train") + with({}), 4, "/dev/full");
}

} // namespace
