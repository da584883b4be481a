// kxmath train on recordings that give a result.
#include "kxmath/toolRun.h"
#include "kxmath/trainRecordings.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>

namespace {

using namespace tool_test;

/// A folder with two recordings, one of them in folders of awkward names, settings, and a place for results.
class Train : public ToolTest {
protected:
    Train() : ToolTest("train") {
        QDir(path("")).mkpath("a_1.bin/b");
        QDir(path("")).mkpath("results");
        write("settings.ini", trainSettings());
        writeRecordings({0.25f, -1.0f, 0.5f}, {0.5f, -2.5f, 0.0f});
    }

    void writeRecordings(const std::vector<SeenWheel>& left, const std::vector<SeenWheel>& right) const {
        write("a_1.bin/b/left_1001.bin", recording(left, RecordKind::CloudSections));
        write("right_1002.bin", recording(right, RecordKind::ProfileRecords));
    }

    /// The arguments for a run in the folder `from`.
    QStringList with(const QStringList& more, const QString& from = "") const {
        const QDir dir(path(from));
        const auto name = [&](const char* file) { return dir.relativeFilePath(path(file)); };
        const QStringList recordings = {name("a_1.bin/b/left_1001.bin"), name("right_1002.bin")};
        return recordings + QStringList{"--settings", name("settings.ini"), "--out", name("results")} + more;
    }

    QStringList results() const {
        return QDir(path("results")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    }
};

#define NO_PLACES "\"the records of the pass have no rising z, which gives the gaps between axles\""
// 40 points are 13 windows of 3, the last of which ends at the last point but one and stays.
const char* const kTable =
    "pair,wheel_1,profiles_1,first_record_1,last_record_1,chosen_profile_1,points_1,"
    "wheel_2,profiles_2,first_record_2,last_record_2,chosen_profile_2,points_2,"
    "distance,deviation,verdict,yaw,chord,distance_low,distance_high,yaw_low,yaw_high,"
    "distance_reason,interval_reason,yaw_reason,vehicle,bogie,axle,mark,number,vehicle_reason\n"
    "1,1,10,21,30,5,39,1,10,21,30,5,39,1360.75,0.75,ok,0,0,1360.75,1360.75,0,0,,,,,,,,," NO_PLACES "\n"
    "2,2,10,51,60,5,39,2,10,51,60,5,39,1356.5,-3.5,out,0,0,1356.5,1356.5,0,0,,,,,,,,," NO_PLACES "\n"
    "3,3,10,101,110,5,39,3,10,101,110,5,39,1360.5,0.5,ok,0,0,1360.5,1360.5,0,0,,,,,,,,," NO_PLACES "\n";

TEST_F(Train, GivesTheSameFromAnyFolderAndWithOldFilesAround) {
    // Directories of the same names with files that detection would neither empty nor tell from its own.
    for (const QString stale : {"left_1001", "results/left_1001", "results/incomplete-pass-left_1001-right_1002",
                                "results/pass-left_1001-right_1002/left_1001"}) {
        QDir(path("")).mkpath(stale);
        write(stale + "/01_11.bin", QByteArray("\2\1\0\0\0\0\0\0\0\0\0", 11));
        write(stale + "/04_01.bin", QByteArray("\2\1\0\0\0\0\0\0\0\0\0", 11));
    }
    for (const QString from : {".", "results", "a_1.bin/b"}) {
        const QStringList outputs = {"--csv", "out.csv", "--json", "out.json", "--report", "out.html", "--mode", "3"};
        runTool(path(from), QStringList("train") + with(outputs, from));
        EXPECT_EQ(read(from + "/out.csv").toStdString(), kTable);
        EXPECT_EQ(readJson(from + "/out.json")["distances"].toInt(), 3);
        EXPECT_EQ(read(from + "/out.json"), read("out.json")) << "the folder enters no result";
        EXPECT_TRUE(read(from + "/out.html").startsWith("<!DOCTYPE html>"));
    }
    EXPECT_EQ(read("settings.ini"), trainSettings());
    EXPECT_EQ(results().filter("incomplete-").size(), 1) << "only the one that was there";
    EXPECT_EQ(results().filter(QRegularExpression("^pass-left_1001-right_1002(-[234])?$")).size(), 4);
}

TEST_F(Train, PairsWheelsByPlaceWhenOneSensorMissedSome) {
    // Wheels that are seen, and their numbers in the pairs, - for none. Triggered: the right one pauses, both give z.
    const std::tuple<const char*, const char*, const char*, int, bool> cases[] = {
        {"-xxxxx", "xxxxxx", "-/1 1/2 2/3 3/4 4/5 5/6", 1, false},
        {"xxxxxx", "xx-xxx", "1/1 2/2 3/- 4/3 5/4 6/5", 1, false},
        {"xxxx--", "xxxxxx", "1/1 2/2 3/3 4/4 -/5 -/6", 1, false},
        {"x-xx-x", "xxx-xx", "1/1 -/2 2/3 3/- -/4 4/5", 1, false},
        {"x-xxxx", "xxxx-x", "1/1 -/2 2/3 3/4 4/- 5/5", 1, false}, // as many on both sides
        {"-xxxxx", "xxxxxx", "-/1 1/2 2/3 3/4 4/5 5/6", 1, true},
        {"xxxxxx", "xxxxxx", "1/1 2/2 3/3 4/4 5/5 6/6", 0, true},
    };
    for (const auto& [leftSeen, rightSeen, pairNumbers, warnings, isTriggered] : cases) {
        SCOPED_TRACE(testing::Message() << leftSeen << " " << rightSeen);
        std::vector<SeenWheel> left, right;
        for (int i = 0; i < 6; ++i) {
            left.push_back(leftSeen[i] == 'x' ? SeenWheel(0.0f) : SeenWheel());
            right.push_back(rightSeen[i] == 'x' ? SeenWheel(0.0f) : SeenWheel());
        }
        writeRecordings(left, right);
        if (isTriggered) {
            write("a_1.bin/b/left_1001.bin", recording(left, RecordKind::ProfileRecords));
            write("right_1002.bin", recording(right, RecordKind::ProfileRecords, 40, true));
        }
        const ToolResult result = run(with({"--csv", "-"}));
        EXPECT_EQ(result.errors.count('\n'), warnings) << result.errors.toStdString();
        QStringList pairs;
        for (const QString& line : QString(result.output).split('\n', Qt::SkipEmptyParts).mid(1)) {
            const QStringList fields = line.split(',');
            const auto number = [&](int i) { return fields[i].isEmpty() ? QString("-") : fields[i]; };
            pairs.append(number(1) + '/' + number(7));
            EXPECT_EQ(fields[13].isEmpty(), fields[1].isEmpty() || fields[7].isEmpty()) << "the distance";
        }
        EXPECT_EQ(pairs.join(' ').toStdString(), pairNumbers);
    }
}

TEST_F(Train, ReportIsSelfContainedAndEscaped) {
    const QString odd = "%1%2<b>&\"_1001.bin";
    write(odd, read("a_1.bin/b/left_1001.bin"));
    const QString page = run(QStringList(odd) + with({"--report", "-", "--wheel", "2"}).mid(1)).output;
    EXPECT_TRUE(page.contains("wheel of %1%2&lt;b&gt;&amp;&quot;_1001.bin (SENSOR1)"));
    EXPECT_TRUE(page.contains("Profiles of wheel pair 2"));
    for (const char* const forbidden : {"<script", "<b>", "<img", "<link", "@import", "href=", "src="}) {
        EXPECT_FALSE(page.contains(QLatin1String(forbidden))) << forbidden;
    }
    EXPECT_EQ(page.count("<svg"), 8) << "wheels, distances, profiles, offsets and back faces of both sides";
    for (qsizetype at = page.indexOf("<svg"); at >= 0; at = page.indexOf("<svg", at + 1)) {
        const QString plot = page.mid(at, page.indexOf("</svg>", at) + 6 - at);
        QXmlStreamReader reader(plot);
        while (!reader.atEnd()) {
            reader.readNext();
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
        EXPECT_FALSE(plot.contains("nan"));
    }
}

TEST_F(Train, WritesIntoPipesInsteadOfReplacingThem) {
    const ToolResult result =
        runShell(path(""), "mkfifo pipe && { cat pipe & } && \"$KXMATH\" train " + with({"--csv", "pipe"}).join(' ') +
                               " > table; code=$?; test -p pipe && wait && exit $code");
    EXPECT_EQ(result.output.toStdString(), kTable);
}

} // namespace
