// kxmath conicity: values, forms of input, warnings and refusals.
#include "shapes/crossSections.h"
#include "tools/toolRun.h"

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

namespace {

using namespace tool_test;
using KxMath::KxProfile;

void writeText(const QString& path, const QByteArray& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

/// A file as a contact profile gauge writes it: header lines, one of them with numbers, and three columns.
QByteArray gaugeText(const KxProfile& profile, float xFactor, float yFactor) {
    QByteArray text = "Stock.......:\n32.58 37.11 14.71  (Sd/Sh/qR)\nWheel ID....: 7\n\n";
    for (const auto& p : profile.points) {
        text += QByteArray::number(double(xFactor * p.x), 'f', 5) + "  " +
                QByteArray::number(double(yFactor * p.y), 'f', 5) + " 0.000\n";
    }
    return text;
}

class ConicityCommand : public testing::Test {
protected:
    void SetUp() override {
        kxtool::appendConicalWheel(wheel_, 0.1f);
        kxtool::appendRoundRail(rail_, 80.0f);
        wheel_.writeToCSVFile(path("wheel.csv"));
        rail_.writeToCSVFile(path("rail.csv"));
    }

    QString path(const char* name) const { return QDir(folder_.path()).filePath(QLatin1String(name)); }

    ToolResult run(const char* wheel, const char* rail, const QStringList& more) const {
        return runTool(folder_.path(),
                       QStringList{"conicity", "--wheel1", wheel, "--wheel2", wheel, "--rail1", rail, "--rail2", rail,
                                   "--gauge", "1442", "--back-to-back", "1360", "--gauge-depth", "0"} +
                           more);
    }

    QTemporaryDir folder_;
    KxProfile wheel_;
    KxProfile rail_;
};

TEST_F(ConicityCommand, ReadsAllFormsOfProfiles) {
    static_cast<KxMath::KxPointCloud<KxMath::KxPointXY>&>(wheel_).writeToFile(path("wheel.bin"));
    writeText(path("wheel.whl"), gaugeText(wheel_, 1, 1));
    writeText(path("up.whl"), gaugeText(wheel_, 1, -1));
    writeText(path("inwards.ban"), gaugeText(rail_, -1, 1));
    const struct {
        const char* desc;
        const char* wheel;
        const char* rail;
        QStringList more;
    } cases[] = {
        {"CSV", "wheel.csv", "rail.csv", {}},
        {"cloud section", "wheel.bin", "rail.csv", {}},
        {"gauge text", "wheel.whl", "rail.csv", {}},
        {"y up", "up.whl", "rail.csv", {"--up", "wheels"}},
        {"x inwards", "wheel.csv", "inwards.ban", {"--mirror", "rail1,rail2"}},
    };
    for (const auto& c : cases) {
        const ToolResult result = run(c.wheel, c.rail, QStringList{"--json", "-"} + c.more);
        ASSERT_EQ(result.exitCode, 0) << c.desc << result.errors.constData();
        const QJsonObject json = QJsonDocument::fromJson(result.output).object();
        EXPECT_NEAR(json["shownConicity"].toDouble(), 0.1, 0.005) << c.desc;
        EXPECT_GT(json["conicity"].toArray().size(), 50) << c.desc;
        EXPECT_EQ(result.errors, QByteArray()) << c.desc;
    }
}

TEST_F(ConicityCommand, WritesTableCsvAndReport) {
    const ToolResult result = run("wheel.csv", "rail.csv", {"--csv", "c.csv", "--report", "r.html"});
    ASSERT_EQ(result.exitCode, 0) << result.errors.constData();
    EXPECT_TRUE(result.output.startsWith("equivalent conicity at 3.0 mm: 0.10")) << result.output.constData();
    QFile csv(path("c.csv"));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readLine(), "amplitude;conicity\n");
    QFile report(path("r.html"));
    ASSERT_TRUE(report.open(QIODevice::ReadOnly));
    const QByteArray html = report.readAll();
    EXPECT_EQ(html.count("<svg"), 5);
    EXPECT_FALSE(html.contains("<script"));
    EXPECT_EQ(runTool(folder_.path(), {"conicity", "--help"}).exitCode, 0);
}

TEST_F(ConicityCommand, WarnsWhereInputContradictsTheMethod) {
    const struct {
        QStringList more;
        const char* warning;
    } cases[] = {
        {{"--up", "wheels"}, "wheel1 looks upside down"},
        {{"--up", "rails"}, "rail1 looks upside down"},
        {{"--mirror", "wheel2"}, "wheel2 has its lowest point far from the flange back"},
        {{"--back-to-back", "1360.1"}, "no multiple of 0.2 mm"},
        {{"--amplitude", "60"}, "the amplitude of 60 mm is not reached"},
        {{"--gauge-depth", "50"}, "does not reach down to the gauge depth"},
        {{"--amplitude", "12"}, "the difference of radii jumps"},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(run("wheel.csv", "rail.csv", c.more).errors.contains(c.warning)) << c.warning;
    }
}

TEST_F(ConicityCommand, RefusesWithOneLineAndTheRightCode) {
    writeText(path("empty.csv"), "");
    writeText(path("words.whl"), "no\nnumbers\n");
    writeText(path("cut.bin"), QByteArray("\x02\x05\x00\x01", 4));
    writeText(path("short.csv"), "0;0\n1;1\n");
    const struct {
        const char* wheel;
        QStringList more;
        int exitCode;
    } cases[] = {
        {"missing.csv", {}, 3},
        {"empty.csv", {}, 3},
        {"words.whl", {}, 3},
        {"cut.bin", {}, 3},
        {"wheel.csv", {"--gauge", "x"}, 2},
        {"wheel.csv", {"--up", "sleepers"}, 2},
        {"wheel.csv", {"--columns", "1"}, 2},
        {"wheel.csv", {"--no-such-option"}, 2},
        {"wheel.csv", {"surplus"}, 2},
        {"wheel.csv", {"--json", "no/such/folder/j.json"}, 4},
        {"wheel.csv", {"--json", "wheel.csv"}, 2},
    };
    for (const auto& c : cases) {
        const ToolResult result = run(c.wheel, "rail.csv", c.more);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.wheel << c.more.join(' ').toStdString();
        EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
        EXPECT_EQ(result.output, QByteArray());
    }
    EXPECT_EQ(run("short.csv", "rail.csv", {}).exitCode, 1);
}

TEST_F(ConicityCommand, MakesNoSamplesOfAProfileThatIsTooWide) {
    // Two points at one place: the profile would be straightened, with 40 million samples.
    writeText(path("wide.csv"), "0;0\n0;1\n70;2\n1e9;3\n");
    const ToolResult result = run("wide.csv", "rail.csv", {});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains("wheel1 is 1e+09 mm wide")) << result.errors.constData();
}

} // namespace
