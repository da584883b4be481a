// kxmath train without a result: what it says, the exit code, nothing left behind.
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

    static QStringList with(const QStringList& more) {
        return QStringList{"left_1001.bin", "right_1002.bin", "--settings", "s.ini", "--out", "results"} + more;
    }

    const QByteArray good_ = recording({0.0f, 0.5f}, RecordKind::CloudSections);
};

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
    writeAll(few, few,
             trainSettings().replace("minPointsIn=5", "minPointsIn=2").replace("minPointsIn=6", "minPointsIn=2"));
    expectNone({"1 wheels in 'left_1001.bin', 1 in 'right_1002.bin', none of them"},
               "Not judged, pair 1: the points of a chosen profile give no line.\n");
}

} // namespace
