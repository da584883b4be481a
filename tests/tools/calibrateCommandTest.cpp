// kxmath calibrate on simulated profiles of the object: the pose against the truth, averages, settings and refusals.
#include "tools/toolRun.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <cmath>

namespace {

using namespace tool_test;

class CalibrateCommand : public testing::Test {
protected:
    QString path(const QString& name) const { return QDir(folder_.path()).filePath(name); }

    ToolResult run(const QStringList& arguments) const {
        return runTool(folder_.path(), QStringList{"calibrate"} + arguments);
    }

    /// Makes profiles of the object in the folder `name`. @return the truth
    QJsonObject simulate(const QString& name, const QStringList& arguments) const {
        const ToolResult result =
            runTool(folder_.path(), QStringList{"simulate", name} + QStringList{"--calibration"} + arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors.constData();
        return QJsonDocument::fromJson(read(name + "/truth.json")).object();
    }

    QByteArray read(const QString& name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    void write(const QString& name, const QByteArray& text) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QJsonObject calibrate(const QStringList& arguments, int exitCode = 0) const {
        const ToolResult result = run(arguments + QStringList{"--json", "-"});
        EXPECT_EQ(result.exitCode, exitCode) << arguments.join(' ').toStdString() << result.errors.constData();
        return QJsonDocument::fromJson(result.output).object();
    }

    static void expectPose(const QJsonObject& pose, const QJsonObject& truth, double degrees, double mm) {
        for (const char* const name : {"x", "y", "z"}) {
            EXPECT_NEAR(pose[name].toDouble(), truth[name].toDouble(), mm) << name;
        }
        for (const char* const name : {"alpha", "beta", "gamma"}) {
            EXPECT_NEAR(std::remainder(pose[name].toDouble() - truth[name].toDouble(), 360.0), 0.0, degrees) << name;
        }
    }

    QTemporaryDir folder_;
};

TEST_F(CalibrateCommand, FindsTheSimulatedPose) {
    for (const char* const position : {"1", "2", "3", "4", "5"}) {
        SCOPED_TRACE(position);
        const QJsonObject truth = simulate(position, {position, "--turn", "4,-3,2", "--move", "5,-10,8", "--seed", "3",
                                                      "--plane-y", "120", "--pitch", "22"});
        ASSERT_TRUE(truth["isInView"].toBool());
        const QJsonObject pose = truth["pose"].toObject();
        const QString y = QString::number(pose["y"].toDouble());
        const QStringList profile = {position + QStringLiteral("/calibration-1.bin"),
                                     "--position",
                                     position,
                                     "--plane-y",
                                     "120",
                                     "--pitch",
                                     "22"};
        const QJsonObject found = calibrate(profile + QStringList{"--sensor-y", y});
        expectPose(found["pose"].toObject(), pose, 0.1, 0.3);
        EXPECT_NEAR(found["foundY"].toDouble(), pose["y"].toDouble(), 0.3);
        EXPECT_EQ(found["warnings"].toArray().size(), 0);
        EXPECT_TRUE(found["deviation"].toObject()["x"].isNull());
        const QJsonArray flanks = found["flanks"].toArray();
        ASSERT_EQ(flanks.size(), 8);
        for (const auto& flank : flanks) {
            EXPECT_GT(flank[QLatin1String("points")].toInt(), 20);
            EXPECT_NEAR(flank[QLatin1String("mean")].toDouble(), 0.0, 0.02);
            EXPECT_NEAR(flank[QLatin1String("rms")].toDouble(), 0.02, 0.015);
            EXPECT_FALSE(flank[QLatin1String("isOff")].toBool());
        }
        // Without --sensor-y the positions 2, 4 and 5 find it, the others leave it open.
        const bool findsY = *position == '2' || *position >= '4';
        EXPECT_EQ(calibrate(profile)["pose"].toObject()["y"].isNull(), !findsY);
        // From the other side of the crests the profile would look the same with another gamma.
        const QString otherSide = QString::number(240.0 - pose["y"].toDouble());
        EXPECT_TRUE(run(profile + QStringList{"--sensor-y", otherSide}).errors.contains("other side"));
    }
}

TEST_F(CalibrateCommand, AveragesProfilesOfOnePose) {
    const QJsonObject truth = simulate("a", {"2", "--profiles", "20", "--noise", "0.03"});
    QStringList files;
    QByteArray together;
    for (int i = 1; i <= 20; ++i) {
        files += QStringLiteral("a/calibration-%1.bin").arg(i);
        together += read(files.last());
    }
    const QStringList position = {"--position", "2"};
    const QJsonObject average = calibrate(files + position);
    const QJsonObject single = calibrate(files.mid(0, 1) + position);
    expectPose(average["pose"].toObject(), truth["pose"].toObject(), 0.02, 0.1);
    const QJsonArray profiles = average["profiles"].toArray();
    ASSERT_EQ(profiles.size(), 20);
    EXPECT_EQ(profiles[0]["pose"], single["pose"]);
    for (const char* const name : {"x", "y", "z", "alpha", "beta", "gamma"}) {
        double sum = 0;
        double squares = 0;
        double largest = 0;
        const double mean = average["pose"][name].toDouble();
        for (const auto& profile : profiles) {
            const double value = profile[QLatin1String("pose")].toObject()[name].toDouble();
            sum += value;
            squares += (value - mean) * (value - mean);
            largest = std::max(largest, std::abs(value - mean));
        }
        EXPECT_NEAR(mean, sum / 20, 1e-9) << name;
        EXPECT_NEAR(average["deviation"][name].toDouble(), std::sqrt(squares / 19), 1e-9) << name;
        EXPECT_NEAR(average["largest"][name].toDouble(), largest, 1e-9) << name;
    }
    EXPECT_GT(average["pointDifference"].toDouble(), 0.0);
    EXPECT_LT(average["pointDifference"].toDouble(), 0.2);
    // All records of one file are the same as one file for each.
    write("together.bin", together);
    EXPECT_EQ(calibrate(QStringList{"together.bin"} + position)["pose"], average["pose"]);
    // A profile without a pose is left out and told, one of another pose makes the mean worthless.
    write("flat.csv", "0;250\n1;250\n2;250\n");
    const ToolResult partly = run(files + position + QStringList{"flat.csv"});
    EXPECT_EQ(partly.exitCode, 0);
    EXPECT_TRUE(partly.errors.contains("warning: 'flat.csv' shows 0 apexes")) << partly.errors.constData();
    EXPECT_TRUE(partly.output.contains("20 of 21")) << partly.output.constData();
    simulate("b", {"2", "--turn", "0,0.5,0"});
    const ToolResult moved =
        run(files + position + QStringList{"b/calibration-1.bin", "--write", "s.ini", "--sensor", "1"});
    EXPECT_EQ(moved.exitCode, 1);
    EXPECT_TRUE(moved.errors.contains("not of one pose: 'b/calibration-1.bin'")) << moved.errors.constData();
    EXPECT_FALSE(QFile::exists(path("s.ini")));
}

TEST_F(CalibrateCommand, TellsAFlankThatIsOff) {
    simulate("a", {"2"});
    KxMath::KxProfileZ profile;
    ASSERT_GT(profile.readFromFile(path("a/calibration-1.bin")), 0);
    KxMath::KxProfile apexes;
    QList<KxMath::KxLine> lines;
    ASSERT_EQ(METRO_detectApexes(profile, apexes, lines, 2.0f), 7);
    for (KxMath::KxPointXY& p : profile.points) { // one flank is farther away
        p.y += p.x > apexes.points[4].x && p.x < apexes.points[5].x ? 0.06f : 0.0f;
    }
    profile.writeToFile(path("worn.bin"));
    EXPECT_FALSE(run({"a/calibration-1.bin", "--position", "2"}).output.contains("off"));
    EXPECT_TRUE(run({"worn.bin", "--position", "2"}).output.contains("  off\n"));
}

TEST_F(CalibrateCommand, PutsThePoseIntoSettings) {
    simulate("a", {"1"});
    const QStringList arguments = {"a/calibration-1.bin", "--position", "1", "--write", "s.ini", "--sensor", "2"};
    const QByteArray before = "; by hand\r\nkey = 1, 2\r\n\r\n[SENSOR2]\r\nSN=102\r\n"
                              "beta = 7\r\ny=5.5\r\n; more\r\nbeta=8\r\n\r\n[Other]\r\nbeta=9";
    for (const QByteArray& text : {QByteArray(), before}) {
        if (!text.isEmpty()) {
            write("s.ini", text);
        }
        const ToolResult result = run(arguments);
        ASSERT_EQ(result.exitCode, 0) << result.errors.constData();
        const QJsonObject pose = calibrate(arguments.mid(0, 3))["pose"].toObject();
        const QSettings settings(path("s.ini"), QSettings::IniFormat);
        for (const char* const name : {"x", "z", "alpha", "beta", "gamma"}) {
            EXPECT_NEAR(settings.value(QStringLiteral("SENSOR2/") + name).toDouble(), pose[name].toDouble(), 1e-4);
        }
        EXPECT_EQ(settings.value("SENSOR2/position").toInt(), 1);
        EXPECT_EQ(settings.contains("SENSOR2/y"), !text.isEmpty()) << "position 1 does not find y";
    }
    const QByteArray after = read("s.ini");
    EXPECT_TRUE(after.startsWith("; by hand\r\nkey = 1, 2\r\n\r\n[SENSOR2]\r\nSN=102\r\nbeta=45."));
    EXPECT_TRUE(after.contains("\r\ny=5.5\r\n; more\r\nx="));
    EXPECT_TRUE(after.endsWith("\r\n\r\n[Other]\r\nbeta=9\r\n")) << after.constData();
    EXPECT_EQ(after.count("beta="), 2);
    EXPECT_EQ(run(arguments + QStringList{"--sensor-y", "-177"}).exitCode, 0);
    EXPECT_TRUE(read("s.ini").contains("\r\ny=-177\r\n"));
    EXPECT_EQ(run(arguments).exitCode, 0);
    EXPECT_TRUE(read("s.ini").contains("\r\ny=-177\r\n"));

    // What cannot be merged is left as it is.
    for (const QByteArray& text :
         {QByteArray("[SENSOR2]\nx=\\\n1\n"), QByteArray("[SENSOR2]\n[%53ENSOR2]\nx=1\n"), QByteArray("\xff\xfe")}) {
        write("odd.ini", text);
        const ToolResult result =
            run({"a/calibration-1.bin", "--position", "1", "--write", "odd.ini", "--sensor", "2"});
        EXPECT_EQ(result.exitCode, 3) << text.constData();
        EXPECT_TRUE(result.errors.contains("settings 'odd.ini'")) << result.errors.constData();
        EXPECT_EQ(read("odd.ini"), text);
    }
}

TEST_F(CalibrateCommand, WritesAReport) {
    simulate("a", {"2", "--profiles", "2"});
    const ToolResult result = run({"a/calibration-1.bin", "a/calibration-2.bin", "gone.bin", "--position", "2",
                                   "--report", "r.html", "--write", "s.ini", "--sensor", "1"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
    EXPECT_FALSE(QFile::exists(path("s.ini"))) << "only when all is well";
    const QByteArray html = read("r.html");
    EXPECT_EQ(html.count("<svg"), 4);
    EXPECT_TRUE(html.contains("gone.bin"));
    EXPECT_TRUE(html.contains("behind oblique crest"));
    EXPECT_EQ(run({"--help"}).exitCode, 0);
}

TEST_F(CalibrateCommand, RefusesInOneLine) {
    simulate("a", {"2"});
    const QString profile = "a/calibration-1.bin";
    write("cut.bin", read(profile).left(500));
    write("empty.csv", "");
    write("flat.csv", "0;250\n1;250\n2;250\n");
    const struct {
        QStringList arguments;
        int exitCode;
        const char* line;
    } cases[] = {
        {{"flat.csv", "--position", "2"}, 1, "shows 0 apexes"},
        {{profile, "--position", "4"}, 1, "it would with --position 2 --oblique -0.25"},
        {{profile, "--position", "2", "--oblique", "0.25"}, 1, "it would with --position 2 --oblique -0.25"},
        {{profile, "--position", "2", "--pitch", "24.5"}, 1, "another pitch"},
        {{"gone.bin", "--position", "2"}, 3, "cannot be read"},
        {{"cut.bin", "--position", "2"}, 3, "is damaged"},
        {{"empty.csv", "--position", "2"}, 3, "holds no points"},
        {{".", "--position", "2"}, 3, "'.'"},
        {{}, 2, "no profile"},
        {{profile}, 2, "--position"},
        {{profile, "--position", "x"}, 2, "--position"},
        {{profile, "--position", "2", "--oblique", "0"}, 2, "--oblique"},
        {{profile, "--position", "2", "--pitch", "-1"}, 2, "--pitch"},
        {{profile, "--position", "2", "--slope", "nan"}, 2, "--slope"},
        {{profile, "--position", "2", "--write", "s.ini"}, 2, "--sensor"},
        {{profile, "--position", "2", "--write", "s.ini", "--sensor", "50"}, 2, "--sensor"},
        {{profile, "--position", "2", "--write", profile, "--sensor", "1"}, 2, "--write"},
        {{profile, "--position", "2", "--no-such-option"}, 2, "no-such-option"},
        {{profile, "--position", "2", "--report", "no/such/folder/r.html"}, 4, "cannot write"},
    };
    for (const auto& c : cases) {
        const ToolResult result = run(c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.line << result.errors.constData();
        EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains(c.line)) << result.errors.constData();
        EXPECT_EQ(result.output, QByteArray()) << c.line;
    }
    const struct {
        QStringList arguments;
        const char* line;
    } simulations[] = {
        {{"--calibration", "2", "--cars", "3"}, "--cars has no meaning with"},
        {{"--pitch", "20"}, "--pitch has no meaning without"},
        {{"--calibration", "2", "--turn", "1,2"}, "--turn needs three numbers"},
        {{"--calibration", "2", "--profiles", "0"}, "--profiles"},
        {{"--calibration", "left"}, "--calibration"},
    };
    for (const auto& c : simulations) {
        const ToolResult result = runTool(folder_.path(), QStringList{"simulate", "s"} + c.arguments);
        EXPECT_EQ(result.exitCode, 2) << c.line;
        EXPECT_TRUE(result.errors.contains(c.line)) << result.errors.constData();
    }
}

} // namespace
