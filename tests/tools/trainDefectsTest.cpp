// kxmath train --defects on simulated trains: the right wheels are accused, and no other.
#include "tools/toolRun.h"
#include "tools/trainRecordings.h"

#include <gtest/gtest.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

namespace {

using namespace tool_test;

class TrainDefects : public testing::Test {
protected:
    void simulate(const QStringList& more) {
        ASSERT_EQ(
            runTool(folder_.path(), QStringList{"simulate", "pass", "--cars", "1", "--rate", "1000"} + more).exitCode,
            0);
    }

    ToolResult judge(const QStringList& more) const {
        return runTool(folder_.path(), QStringList{"train", "pass/train_101.bin", "pass/train_102.bin", "--settings",
                                                   "pass/settings.ini", "--defects", "pass/defects.ini"} +
                                           more);
    }

    QTemporaryDir folder_;
};

/// The wheels that are accused, as PAIR:SIDE.
QString accused(const ToolResult& run, const char* object = "defects", const char* verdict = "isDefective") {
    QStringList wheels;
    const QJsonArray pairs = QJsonDocument::fromJson(run.output).object()["pairs"].toArray();
    EXPECT_EQ(pairs.size(), 4);
    for (qsizetype pair = 0; pair < pairs.size(); ++pair) {
        for (qsizetype side = 0; side < 2; ++side) {
            const QJsonValue wheel = pairs[pair]["sides"][side];
            EXPECT_GT(wheel["defects"]["judgedProfiles"].toInt(), 10);
            EXPECT_GE(wheel["roundness"]["radii"].toArray().size(), 10);
            if (wheel[QLatin1String(object)][QLatin1String(verdict)].toBool()) {
                wheels.append(QStringLiteral("%1:%2").arg(pair + 1).arg(side + 1));
            }
        }
    }
    return wheels.join(' ');
}

TEST_F(TrainDefects, AccusesNoSoundWheel) {
    for (const char* const seed : {"1", "2", "3"}) {
        SCOPED_TRACE(seed);
        simulate({"--seed", seed});
        const ToolResult run = judge({"--json", "-"});
        EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
        EXPECT_EQ(accused(run).toStdString(), "");
        EXPECT_EQ(accused(run, "roundness", "isOutOfRound").toStdString(), "");
    }
}

TEST_F(TrainDefects, FindsFlatsOnTheirWheels) {
    simulate({"--rate", "2000", "--flat", "3:2:60", "--flat", "1:1:50:-20", "--flat", "2:2:60:300"});
    const ToolResult run = judge({"--json", "-"});
    EXPECT_EQ(accused(run, "roundness", "isOutOfRound").toStdString(), "1:1 3:2") << "one is out of view";
    EXPECT_EQ(judge({"--report", "flats.html"}).exitCode, 0);
    EXPECT_EQ(readFile(folder_.filePath("flats.html")).count("out of round</td>"), 2);
}

TEST_F(TrainDefects, ComparesNoCirclesWithoutPlaces) {
    simulate({"--records", "cloud", "--points", "400"});
    const ToolResult run = judge({"--json", "-"});
    EXPECT_EQ(run.output.count("\"roundness\": null"), 8);
    EXPECT_EQ(run.errors.count("have no rising z"), 2) << run.errors.toStdString();
}

TEST_F(TrainDefects, FindsBuildUpsOnTheirWheels) {
    for (const char* const seed : {"1", "2"}) {
        SCOPED_TRACE(seed);
        simulate({"--seed", seed, "--build-up", "3:2:0.5", "--build-up", "1:1:1.5"});
        const ToolResult run = judge({"--json", "-"});
        EXPECT_EQ(accused(run).toStdString(), "1:1 3:2");
        const ToolResult elsewhere = judge({"--json", "-", "--defect-range", "-500:-400"});
        EXPECT_EQ(elsewhere.output.count("\"isDefective\": null"), 8) << "nothing to judge is no verdict";
    }
}

TEST_F(TrainDefects, TellsThemInAllForms) {
    simulate({"--build-up", "2:1:1"});
    const ToolResult table = judge({"--csv", "defects.csv", "--report", "defects.html", "--wheel", "2"});
    EXPECT_EQ(table.exitCode, 0) << table.errors.toStdString();
    EXPECT_TRUE(table.output.contains("\n1 defective wheels.\n")) << table.output.toStdString();
    const QList<QByteArray> lines = readFile(folder_.filePath("defects.csv")).split('\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_TRUE(lines[0].contains(",tread_1,judged_profiles_2,"));
    EXPECT_TRUE(lines[0].endsWith(",roundness_2"));
    EXPECT_EQ(lines[2].count("defective"), 1);
    for (const QByteArray& line : lines.first(5)) {
        EXPECT_EQ(line.count(','), lines[0].count(','));
    }
    const QByteArray page = readFile(folder_.filePath("defects.html"));
    EXPECT_EQ(page.count("<svg"), 10) << "those of the distances, the deviations and the radii of both sides";
    EXPECT_FALSE(page.contains("nan"));
}

TEST_F(TrainDefects, RefusesSettingsThatDoNotFit) {
    simulate({"--points", "200"});
    QByteArray settings = readFile(folder_.filePath("pass/defects.ini"));
    struct Case {
        const char* desc;
        QByteArray from, to;
        const char* error;
    };
    const Case cases[] = {
        {"missing line", "lowLevel_k", "x", "lack the key 'SENSOR1/lowLevel_k'"},
        {"other sensors", "SN=101", "SN=7", "name no sensor with the serial number 101"},
        {"no number", "pointsHigher=5", "pointsHigher=few", "hold no whole number in 'pointsHigher'"},
        {"no finite number", "maxDeviation=0.2", "maxDeviation=inf", "hold no number in 'maxDeviation'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        QByteArray changed = settings;
        writeFile(folder_.filePath("pass/defects.ini"), changed.replace(c.from, c.to));
        const ToolResult run = judge({});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_TRUE(run.errors.contains(c.error)) << run.errors.toStdString();
    }
    for (const char* const range : {"1", "2:1", "a:b", "1:2:3", "nan:3"}) {
        EXPECT_EQ(judge({"--defect-range", range}).exitCode, 2) << range;
    }
}

} // namespace
