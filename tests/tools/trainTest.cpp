// kxmath train on recordings that give a result.
#include "tools/toolRun.h"
#include "tools/trainRecordings.h"

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>

namespace {

using namespace tool_test;

/// A folder with two recordings in folders of awkward names, settings, and a place for results.
class Train : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder_.isValid());
        QDir dir(folder_.path());
        dir.mkpath(QStringLiteral("a_1.bin/b"));
        dir.mkpath(QStringLiteral("results"));
        writeFile(path("settings.ini"), trainSettings());
        writeRecordings({0.25f, -1.0f, 0.5f}, {0.5f, -2.5f, 0.0f});
    }

    void writeRecordings(const std::vector<SeenWheel>& left, const std::vector<SeenWheel>& right) {
        writeFile(path("a_1.bin/b/left_1001.bin"), recording(left, RecordKind::CloudSections));
        writeFile(path("right_1002.bin"), recording(right, RecordKind::ProfileRecords));
    }

    QString path(const char* name) const { return folder_.path() + QLatin1Char('/') + QLatin1String(name); }

    QStringList arguments(const QStringList& more = {}) const {
        return QStringList{"train",
                           path("a_1.bin/b/left_1001.bin"),
                           path("right_1002.bin"),
                           "--settings",
                           path("settings.ini"),
                           "--out",
                           path("results")} +
               more;
    }

    QStringList results() const {
        return QDir(path("results")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir folder_;
};

const char* const kHeader = "pair,wheel_1,profiles_1,first_record_1,last_record_1,chosen_profile_1,points_1,"
                            "wheel_2,profiles_2,first_record_2,last_record_2,chosen_profile_2,points_2,"
                            "distance,deviation,verdict\n";

// 40 points are 13 windows of 3, the last of which ends at the last point but one and stays.
const char* const kRows = "1,1,10,21,30,5,39,1,10,21,30,5,39,1360.75,0.75,ok\n"
                          "2,2,10,51,60,5,39,2,10,51,60,5,39,1356.5,-3.5,out\n"
                          "3,3,10,101,110,5,39,3,10,101,110,5,39,1360.5,0.5,ok\n";

TEST_F(Train, MeasuresAllPairs) {
    const ToolResult run = runTool(path("results"), arguments({"--csv", "-"}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output.toStdString(), std::string(kHeader) + kRows);
    EXPECT_EQ(results(), QStringList{"pass-left_1001-right_1002"});
    EXPECT_EQ(QDir(path("results/pass-left_1001-right_1002/left_1001")).entryList(QDir::Files).size(), 30);
    EXPECT_EQ(readFile(path("settings.ini")), trainSettings());

    const ToolResult table = runTool(path("results"), arguments({"--tolerance", "3.5", "--nominal", "1360"}));
    EXPECT_EQ(table.exitCode, 0);
    EXPECT_TRUE(table.output.contains("3 distances, 0 out of tolerance")) << table.output.toStdString();
    EXPECT_TRUE(table.output.contains("1356.500     -3.500       ok")) << table.output.toStdString();
}

TEST_F(Train, GivesTheSameFromAnyFolderAndWithOldFilesAround) {
    // Directories of the same names with files that detection would neither empty nor tell from its own.
    for (const char* const stale : {"left_1001", "results/left_1001", "results/incomplete-pass-left_1001-right_1002",
                                    "results/pass-left_1001-right_1002/left_1001"}) {
        QDir().mkpath(path(stale));
        for (const char* const name : {"/01_11.bin", "/04_01.bin"}) {
            writeFile(path(stale) + QLatin1String(name), QByteArray("\2\1\0\0\0\0\0\0\0\0\0", 11));
        }
    }
    for (const char* const from : {"", "results", "a_1.bin/b"}) {
        SCOPED_TRACE(from);
        const QDir dir(path(from));
        const ToolResult run = runTool(dir.path(), {"train", dir.relativeFilePath(path("a_1.bin/b/left_1001.bin")),
                                                    dir.relativeFilePath(path("right_1002.bin")), "--settings",
                                                    dir.relativeFilePath(path("settings.ini")), "--out",
                                                    dir.relativeFilePath(path("results")), "--csv", "out.csv", "--json",
                                                    "out.json", "--report", "out.html", "--mode", "3"});
        EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
        EXPECT_EQ(readFile(dir.filePath("out.csv")).toStdString(), std::string(kHeader) + kRows);
        EXPECT_FALSE(readFile(dir.filePath("out.json")).isEmpty());
        EXPECT_FALSE(readFile(dir.filePath("out.html")).isEmpty());
    }
    EXPECT_EQ(results().filter("incomplete-").size(), 1) << "only the one that was there";
    EXPECT_EQ(results().filter(QRegularExpression("^pass-left_1001-right_1002(-[234])?$")).size(), 4);
}

TEST_F(Train, WritesJsonForPrograms) {
    writeRecordings({0.1f, 1.0f}, {SeenWheel(), 0.0f});
    const ToolResult run = runTool(path("results"), arguments({"--json", "-"}));
    EXPECT_EQ(run.exitCode, 0);
    const QJsonObject document = QJsonDocument::fromJson(run.output).object();
    EXPECT_EQ(document["distances"].toInt(), 1);
    EXPECT_EQ(document["warnings"].toArray().size(), 1);
    EXPECT_EQ(document["folder"].toString(), path("results/pass-left_1001-right_1002"));
    EXPECT_EQ(document["recordings"][1]["profileRecords"].toInt(), 100);
    const QJsonValue first = document["pairs"][0];
    EXPECT_TRUE(first["distance"].isNull());
    EXPECT_TRUE(first["inTolerance"].isNull());
    EXPECT_TRUE(first["sides"][1].isNull());
    EXPECT_EQ(first["sides"][0]["firstRecord"].toInt(), 21);
    EXPECT_EQ(document["pairs"][1]["distance"].toDouble(), 1361.0);
    EXPECT_EQ(document["pairs"][1]["inTolerance"].toBool(), true);
}

TEST_F(Train, PairsWheelsByPlaceWhenOneSensorMissedSome) {
    struct Case {
        const char* desc;
        std::vector<int> missedLeft, missedRight; // of wheels 0 to 5
        const char* pairs; // wheel numbers of both sides, - for none
        bool isWarned;
        bool isTriggered = false; // the right sensor pauses, both give positions
    };
    const Case cases[] = {
        {"first wheel missed", {0}, {}, "-/1 1/2 2/3 3/4 4/5 5/6", true},
        {"wheel in the middle missed", {}, {2}, "1/1 2/2 3/- 4/3 5/4 6/5", true},
        {"last wheels missed", {4, 5}, {}, "1/1 2/2 3/3 4/4 -/5 -/6", true},
        {"different wheels missed", {1, 4}, {3}, "1/1 -/2 2/3 3/- -/4 4/5", true},
        {"as many missed: by number, with a warning", {1}, {4}, "1/1 2/2 3/3 4/4 5/5", true},
        {"none missed", {}, {}, "1/1 2/2 3/3 4/4 5/5 6/6", false},
        {"wheel missed by a sensor that pauses", {0}, {}, "-/1 1/2 2/3 3/4 4/5 5/6", true, true},
        {"none missed, but a sensor that pauses", {}, {}, "1/1 2/2 3/3 4/4 5/5 6/6", false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        std::vector<SeenWheel> left(6, 0.0f);
        std::vector<SeenWheel> right(6, 0.0f);
        for (size_t i = 0; i < 6; ++i) {
            right[i] = static_cast<float>(i) * 0.25f; // tells which wheel a distance is from
        }
        for (const int wheel : c.missedLeft) {
            left[static_cast<size_t>(wheel)].reset();
        }
        for (const int wheel : c.missedRight) {
            right[static_cast<size_t>(wheel)].reset();
        }
        writeRecordings(left, right);
        if (c.isTriggered) {
            writeFile(path("a_1.bin/b/left_1001.bin"), recording(left, RecordKind::ProfileRecords));
            writeFile(path("right_1002.bin"), recording(right, RecordKind::ProfileRecords, 40, true));
        }
        const ToolResult run = runTool(path("results"), arguments({"--csv", "-"}));
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.errors.count('\n'), c.isWarned ? 1 : 0) << run.errors.toStdString();
        QStringList pairs;
        const QStringList lines = QString::fromUtf8(run.output).split('\n', Qt::SkipEmptyParts).mid(1);
        for (const QString& line : lines) {
            const QStringList fields = line.split(',');
            const auto number = [&](int i) { return fields[i].isEmpty() ? QString("-") : fields[i]; };
            pairs.append(number(1) + '/' + number(7));
            const bool isComplete = !fields[1].isEmpty() && !fields[7].isEmpty();
            ASSERT_EQ(!fields[13].isEmpty(), isComplete);
            if (isComplete) {
                std::vector<float> seen;
                for (const SeenWheel& wheel : right) {
                    if (wheel) {
                        seen.push_back(*wheel);
                    }
                }
                EXPECT_EQ(fields[13].toFloat(), kBaseDistance + seen[static_cast<size_t>(fields[7].toInt() - 1)]);
            }
        }
        EXPECT_EQ(pairs.join(' ').toStdString(), c.pairs);
    }
}

TEST_F(Train, ReportIsSelfContainedAndEscaped) {
    const QString odd = path("%1%2<b>&\"_1001.bin");
    ASSERT_TRUE(QFile::copy(path("a_1.bin/b/left_1001.bin"), odd));
    const ToolResult run =
        runTool(path("results"), {"train", odd, path("right_1002.bin"), "--settings", path("settings.ini"), "--out",
                                  path("results"), "--report", "-", "--wheel", "2"});
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    const QString page = QString::fromUtf8(run.output);
    EXPECT_TRUE(page.startsWith("<!DOCTYPE html>"));
    EXPECT_TRUE(page.contains("wheel of %1%2&lt;b&gt;&amp;&quot;_1001.bin (SENSOR1)"));
    EXPECT_TRUE(page.contains("Profiles of wheel pair 2"));
    for (const char* const forbidden : {"<script", "<b>", "<img", "<link", "@import", "href=", "src="}) {
        EXPECT_FALSE(page.contains(QLatin1String(forbidden))) << forbidden;
    }
    int plots = 0;
    for (qsizetype at = page.indexOf("<svg"); at >= 0; at = page.indexOf("<svg", at + 1)) {
        const qsizetype end = page.indexOf("</svg>", at) + 6;
        QXmlStreamReader reader(page.mid(at, end - at));
        while (!reader.atEnd()) {
            reader.readNext();
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
        EXPECT_FALSE(page.mid(at, end - at).contains("nan"));
        ++plots;
    }
    EXPECT_EQ(plots, 6) << "wheels, distances, profiles and offsets of both sides";
}

TEST_F(Train, FindsTheTruthOfASimulatedTrain) {
    ASSERT_EQ(runTool(folder_.path(), {"simulate", "pass", "--cars", "1", "--points", "320", "--speed", "20"}).exitCode,
              0);
    const QJsonArray truth = QJsonDocument::fromJson(readFile(path("pass/truth.json"))).object()["pairs"].toArray();
    ASSERT_EQ(truth.size(), 4);
    for (const char* const mode : {"0", "3"}) {
        SCOPED_TRACE(mode);
        const ToolResult run =
            runTool(folder_.path(), {"train", "pass/train_101.bin", "pass/train_102.bin", "--settings",
                                     "pass/settings.ini", "--json", "-", "--mode", mode});
        EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
        EXPECT_EQ(run.errors, "");
        const QJsonArray pairs = QJsonDocument::fromJson(run.output).object()["pairs"].toArray();
        ASSERT_EQ(pairs.size(), truth.size());
        for (qsizetype i = 0; i < pairs.size(); ++i) {
            EXPECT_NEAR(pairs[i]["distance"].toDouble(), truth[i]["backToBack"].toDouble(), 0.1); // as promised
        }
    }
}

TEST_F(Train, WritesIntoPipesInsteadOfReplacingThem) {
    const ToolResult run =
        runShell(path("results"), "mkfifo ../pipe && { cat ../pipe & } && \"$KXMATH\" train "
                                  "../a_1.bin/b/left_1001.bin ../right_1002.bin --settings ../settings.ini "
                                  "--csv ../pipe > ../table; code=$?; test -p ../pipe && wait && exit $code");
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.output.toStdString(), std::string(kHeader) + kRows);
}

/// The limit for the size of files kills the run at a wheel file of its second wheel.
TEST_F(Train, KilledRunLeavesNoResult) {
    QByteArray wheels = recording({0.0f}, RecordKind::CloudSections);
    wheels += recording({0.0f}, RecordKind::CloudSections, 400);
    writeFile(path("a_1.bin/b/left_1001.bin"), wheels);
    const ToolResult killed = runShell(path("results"), "ulimit -c 0; ulimit -f 2; exec \"$KXMATH\" train "
                                                        "../a_1.bin/b/left_1001.bin ../right_1002.bin "
                                                        "--settings ../settings.ini");
    EXPECT_EQ(killed.exitCode, -1);
    const QString left = "incomplete-pass-left_1001-right_1002";
    EXPECT_EQ(results(), QStringList{left});
    EXPECT_TRUE(QFile::exists(path("results/") + left + "/left_1001/01_10.bin")) << "it had begun";

    EXPECT_EQ(runTool(path("results"), arguments()).exitCode, 0) << "the next run is not disturbed";
    EXPECT_EQ(results(), (QStringList{left, "pass-left_1001-right_1002"}));
}

} // namespace
