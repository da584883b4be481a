// kxmath calibrate on simulated profiles of the object: the pose against the truth, averages, settings and refusals.
#include "kxmath/toolRun.h"

#include <QtCore/QLockFile>
#include <QtCore/QSettings>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace tool_test;

class CalibrateCommand : public ToolTest {
protected:
    CalibrateCommand() : ToolTest("calibrate") {}

    QJsonValue takeShots(const QString& name, const QStringList& arguments) const {
        return simulate(name, QStringList("--calibration") + arguments);
    }

    static void expectPose(const QJsonValue& pose, const QJsonValue& truth, double degrees, double mm) {
        for (const char* const name : {"x", "y", "z", "alpha", "beta", "gamma"}) {
            const double difference = pose[name].toDouble() - truth[name].toDouble();
            EXPECT_NEAR(std::remainder(difference, 360.0), 0.0, name[1] == '\0' ? mm : degrees) << name;
        }
    }
};

TEST_F(CalibrateCommand, FindsTheSimulatedPose) {
    const QStringList object = {"--plane-y", "120", "--pitch", "22"};
    for (const char* const position : {"1", "2", "3", "4", "5"}) {
        SCOPED_TRACE(position);
        const QJsonValue truth =
            takeShots(position, QStringList{position, "--turn", "4,-3,2", "--move", "5,-10,8", "--seed", "3"} + object);
        ASSERT_TRUE(truth["isInView"].toBool());
        const double y = truth["pose"]["y"].toDouble();
        const QStringList shot = QStringList{QString(position) + "/calibration-1.bin", "--position", position} + object;
        const QJsonValue found = json(shot + QStringList{"--sensor-y", QString::number(y)});
        expectPose(found["pose"], truth["pose"], 0.1, 0.3);
        EXPECT_NEAR(found["foundY"].toDouble(), y, 0.3);
        EXPECT_EQ(found["warnings"].toArray().size(), 0);
        const QJsonArray flanks = found["flanks"].toArray();
        ASSERT_EQ(flanks.size(), 8);
        for (const QJsonValue flank : flanks) {
            EXPECT_GT(flank["points"].toInt(), 20);
            EXPECT_NEAR(flank["mean"].toDouble(), 0.0, 0.02);
            EXPECT_NEAR(flank["rms"].toDouble(), 0.02, 0.015);
        }
        // Without --sensor-y the positions 2, 4 and 5 find it, the others leave it open.
        const bool findsY = *position == '2' || *position >= '4';
        EXPECT_EQ(json(shot)["pose"]["y"].isNull(), !findsY);
        // From the other side of the crests the profile would look the same with another gamma.
        const QString otherSide = QString::number(240.0 - y);
        EXPECT_TRUE(run(shot + QStringList{"--sensor-y", otherSide}, 1).errors.contains("other side"));
    }
}

TEST_F(CalibrateCommand, AveragesProfilesOfOnePose) {
    const QJsonValue truth = takeShots("a", {"2", "--profiles", "20", "--noise", "0.03"});
    QStringList arguments = {"--position", "2"};
    QByteArray together;
    for (int i = 1; i <= 20; ++i) {
        arguments += QStringLiteral("a/calibration-%1.bin").arg(i);
        together += read(arguments.last());
    }
    const QJsonValue average = json(arguments);
    expectPose(average["pose"], truth["pose"], 0.02, 0.1);
    EXPECT_NEAR(average["deviation"]["x"].toDouble(), 0.05, 0.045);
    EXPECT_GE(average["largest"]["x"].toDouble(), average["deviation"]["x"].toDouble());
    write("together.bin", together);
    EXPECT_EQ(json({"together.bin", "--position", "2"})["pose"], average["pose"]);
    // A profile without a pose is reported and left out; one of another pose makes the mean invalid.
    write("flat.csv", "0;250\n1;250\n2;250\n");
    const ToolResult partly = run(arguments + QStringList{"flat.csv", "--report", "r.html"});
    EXPECT_GE(read("r.html").count("<svg"), 4);
    EXPECT_TRUE(partly.errors.contains("warning: 'flat.csv' shows 0 apexes")) << partly.errors.constData();
    EXPECT_TRUE(partly.output.contains("20 of 21")) << partly.output.constData();
    takeShots("b", {"2", "--turn", "0,0.5,0"});
    const ToolResult moved =
        run(arguments + QStringList{"b/calibration-1.bin", "--write", "s.ini", "--sensor", "1"}, 1);
    EXPECT_TRUE(moved.errors.contains("not of one pose: 'b/calibration-1.bin'")) << moved.errors.constData();
    EXPECT_FALSE(QFile::exists(path("s.ini")));
}

TEST_F(CalibrateCommand, MarksAFlankThatIsOff) {
    takeShots("a", {"2"});
    KxProfileZ profile;
    ASSERT_GT(profile.readFromFile(path("a/calibration-1.bin")), 0);
    KxProfile apexes;
    QList<KxLine> lines;
    ASSERT_EQ(METRO_detectApexes(profile, apexes, lines, 2.0f), 7);
    for (KxPointXY& p : profile.points) { // one flank is farther away
        p.y += p.x > apexes.points[4].x && p.x < apexes.points[5].x ? 0.06f : 0.0f;
    }
    profile.writeToFile(path("worn.bin"));
    EXPECT_FALSE(run({"a/calibration-1.bin", "--position", "2"}).output.contains("off"));
    EXPECT_TRUE(run({"worn.bin", "--position", "2"}).output.contains("  off\n"));
    run({"worn.bin", "--position", "2", "--fail-on", "out"}, 5);
    run({"a/calibration-1.bin", "--position", "2", "--fail-on", "out,not-judged"});
}

TEST_F(CalibrateCommand, PutsThePoseIntoSettings) {
    takeShots("a", {"1"});
    const QStringList arguments = {"a/calibration-1.bin", "--position", "1", "--write", "s.ini", "--sensor", "2"};
    run(arguments);
    EXPECT_FALSE(read("s.ini").contains("\ny=")) << "position 1 does not find y";
    write("s.ini", "; by hand\r\nkey = 1, 2\r\n\r\n[SENSOR2]\r\nSN=102\r\n"
                   "beta = 7\r\ny=5.5\r\n; more\r\nbeta=8\r\n\r\n[Other]\r\nbeta=9");
    run(arguments);
    const QByteArray after = read("s.ini");
    EXPECT_TRUE(after.startsWith("; by hand\r\nkey = 1, 2\r\n\r\n[SENSOR2]\r\nSN=102\r\nbeta=45."));
    EXPECT_TRUE(after.contains("\r\ny=5.5\r\n; more\r\nx="));
    EXPECT_TRUE(after.endsWith("\r\n\r\n[Other]\r\nbeta=9\r\n")) << after.constData();
    EXPECT_EQ(after.count("beta="), 2);
    const QJsonValue pose = json(arguments.mid(0, 3))["pose"].toObject();
    const QSettings settings(path("s.ini"), QSettings::IniFormat);
    for (const char* const name : {"x", "z", "alpha", "beta", "gamma"}) {
        EXPECT_NEAR(settings.value(QStringLiteral("SENSOR2/") + name).toDouble(), pose[name].toDouble(), 1e-4);
    }
    EXPECT_EQ(settings.value("SENSOR2/position").toInt(), 1);
    run(arguments + QStringList{"--sensor-y", "-177"});
    EXPECT_TRUE(read("s.ini").contains("\r\ny=-177\r\n"));
    // A file that cannot be merged stays unchanged.
    for (const QByteArray text : {"[SENSOR2]\nx=\\\n1\n", "[SENSOR2]\n[%53ENSOR2]\nx=1\n", "\xff\xfe"}) {
        write("s.ini", text);
        EXPECT_TRUE(run(arguments, 3).errors.contains("settings 's.ini'")) << text.constData();
        EXPECT_EQ(read("s.ini"), text);
    }
}

TEST_F(CalibrateCommand, PosesOfSeveralRunsAllStayInTheSettings) {
    takeShots("a", {"2"});
    constexpr int kSensors = 8;
    for (int round = 1; round <= 5; ++round) {
        write("s.ini", "[Mine]\nkey=1\n");
        runShell(path(""),
                 QString("for n in $(seq %1); do \"$KXMATH\" calibrate a/calibration-1.bin --position 2 --write "
                         "s.ini --sensor $n >/dev/null || echo >failed & done; wait; test ! -e failed")
                     .arg(kSensors));
        const QByteArray settings = read("s.ini");
        EXPECT_EQ(settings.count("position=2"), kSensors) << settings.constData();
        EXPECT_TRUE(settings.startsWith("[Mine]\nkey=1\n"));
    }
    EXPECT_FALSE(QFile::exists(path("s.ini.lock")));
}

TEST_F(CalibrateCommand, WaitsForTheLockOfALivingProcessOnly) {
    takeShots("a", {"2"});
    write("s.ini", "");
    ASSERT_TRUE(QFile::link(path("s.ini"), path("link.ini")));
    const QStringList arguments = {"a/calibration-1.bin", "--position", "2", "--write", "link.ini", "--sensor", "3"};
    // A process that ends without a destructor leaves its lock, as one that is killed.
    const pid_t holder = fork();
    if (holder == 0) {
        QLockFile lock(path("s.ini.lock"));
        _exit(lock.lock() ? 0 : 1);
    }
    int status = -1;
    ASSERT_TRUE(waitpid(holder, &status, 0) == holder && status == 0 && QFile::exists(path("s.ini.lock")));
    run(arguments);
    EXPECT_TRUE(read("s.ini").contains("[SENSOR3]"));

    write("s.ini", "");
    QLockFile held(path("s.ini.lock"));
    ASSERT_TRUE(held.lock());
    const ToolResult result = run(arguments, 4);
    EXPECT_TRUE(result.errors.contains("settings 'link.ini' could not be written: the lock 's.ini.lock' beside it was "
                                       "held by another process for 10 s"))
        << result.errors.constData();
    EXPECT_EQ(read("s.ini"), "");
}

TEST_F(CalibrateCommand, CountsProfilesWithoutAPose) {
    takeShots("a", {"2"});
    QByteArray recording;
    for (int i = 0; i < 200; ++i) { // profiles with 0, 1, 2 ... 7 apexes, the more the rarer
        KxProfileZ profile{float(i)};
        const int crests = i % 100 < 90 ? 0 : (i - 90) % 8;
        for (int p = 0; p < 400; ++p) {
            const float x = 0.5f * float(p);
            profile.points.append(
                at(x, crests == 0 ? 250.0f : 250.0f + 10.0f * std::abs(std::sin(x * float(crests) / 80))));
        }
        profile.writeToFile(path("one.bin"));
        recording += read("one.bin");
    }
    write("recording.bin", recording);
    const ToolResult result = run({"recording.bin", "--position", "2", "--report", "r.html"}, 1);
    EXPECT_LE(result.errors.count('\n'), 5) << result.errors.constData();
    EXPECT_TRUE(result.errors.contains("'recording.bin, profile 1' shows 0 apexes"));
    EXPECT_TRUE(result.errors.endsWith("none of 200 profiles has a pose\n"));
    EXPECT_TRUE(read("r.html").contains("No result:</strong> none of 200 profiles has a pose."));
    const ToolResult some =
        run({"recording.bin", "a/calibration-1.bin", "--position", "2", "--fail-on", "not-judged"}, 5);
    EXPECT_TRUE(some.errors.contains("--fail-on: 200 x not-judged")) << some.errors.constData();
    EXPECT_TRUE(some.output.contains("profiles with a pose: 1 of 201"));
}

} // namespace
