// kxmath wheel: measures against the closed form, forms of input, verdicts and refusals.
#include "shapes/rimSection.h"
#include "simulator/wheelContour.h"
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
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using KxMath::KxProfile;

void writeText(const QString& path, const QByteArray& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

/// Lines as a contact profile gauge writes them.
QByteArray gaugeText(const KxProfile& profile, float shift, float xFactor, float yFactor) {
    QByteArray text = "Stock.......:\n32.58 37.11 14.71  (Sd/Sh/qR)\n\n";
    for (const auto& p : profile.points) {
        text += QByteArray::number(double(xFactor * (p.x + shift)), 'f', 5) + "  " +
                QByteArray::number(double(yFactor * p.y), 'f', 5) + " 0.000\n";
    }
    return text;
}

class WheelCommand : public testing::Test {
protected:
    void SetUp() override {
        for (int i = 0; i <= 2600; ++i) {
            const double x = i * 0.05;
            wheel_.points.append(
                KxPointXY(static_cast<float>(x), static_cast<float>(kxsim::s1002Height(x - kxsim::kTapeCircle))));
        }
        wheel_.writeToCSVFile(path("wheel.csv"));
    }

    QString path(const char* name) const { return QDir(folder_.path()).filePath(QLatin1String(name)); }

    ToolResult run(const QStringList& arguments) const {
        return runTool(folder_.path(), QStringList{"wheel"} + arguments);
    }

    QJsonArray measure(const QStringList& arguments, int exitCode = 0) const {
        const ToolResult result = run(arguments + QStringList{"--json", "-"});
        EXPECT_EQ(result.exitCode, exitCode) << arguments.join(' ').toStdString() << result.errors.constData();
        return QJsonDocument::fromJson(result.output).object()["wheels"].toArray();
    }

    QTemporaryDir folder_;
    KxProfile wheel_;
};

TEST_F(WheelCommand, MeasuresAllFormsOfWheels) {
    static_cast<KxMath::KxPointCloud<KxPointXY>&>(wheel_).writeToFile(path("wheel.bin"));
    writeText(path("wheel.whl"), gaugeText(wheel_, 0, 1, 1));
    writeText(path("turned.whl"), gaugeText(wheel_, 0, -1, -1));
    writeText(path("tape.whl"), gaugeText(wheel_, -70, 1, 1));
    KxProfile late;
    late.points = wheel_.points.mid(40); // from 2 mm on
    late.writeToCSVFile(path("late.csv"));
    // The section of a rim that stands at an angle about a wheel's centre off the origin.
    KxMath::KxPointCloud<KxPointXYZ> rim;
    kxtool::appendRimSection(wheel_, rim);
    for (KxPointXYZ& p : rim.points) {
        p = KxPointXYZ(100.0f + 0.6f * p.x, p.y, 20.0f + 0.8f * p.x);
    }
    rim.writeToFile(path("rim.bin"));
    const QList<QStringList> cases = {{"wheel.csv"},
                                      {"wheel.bin"},
                                      {"wheel.whl"},
                                      {"turned.whl", "--up", "--mirror"},
                                      {"tape.whl"},
                                      {"tape.whl", "--flange-back", "-70"},
                                      {"turned.whl", "--up", "--mirror", "--flange-back", "0"},
                                      {"late.csv", "--flange-back", "0"},
                                      {"wheel.csv", "--spacing", "0.05"},
                                      {"rim.bin", "--centre", "100,20"}};
    for (const QStringList& arguments : cases) {
        const QJsonObject wheel = measure(arguments).at(0).toObject();
        const std::string desc = arguments.join(' ').toStdString();
        EXPECT_NEAR(wheel["heightAt70"].toDouble(), 28.0, 0.02) << desc;
        EXPECT_NEAR(wheel["heightExcess"].toDouble(), 0.0, 0.02) << desc;
        EXPECT_NEAR(wheel["xAtLevel18"].toDouble(), 32.5, 0.12) << desc;
        EXPECT_NEAR(wheel["widthLevel2ToH13"].toDouble(), 9.50, 0.12) << desc;
        EXPECT_EQ(wheel["warnings"].toArray().size(), 0) << desc;
    }
    EXPECT_NEAR(measure({"late.csv"}).at(0)["xAtLevel18"].toDouble(), 30.5, 0.12) << "counted from its first point";
}

TEST_F(WheelCommand, JudgesByLimits) {
    const struct {
        QStringList limits;
        const char* verdict;
    } cases[] = {
        {{}, ""},
        {{"--min-height", "27.9", "--max-height", "28.1"}, "within"},
        {{"--min-height", "28.1"}, "outside"},
        {{"--max-width", "9", "--min-height", "20"}, "outside"},
        {{"--max-thickness", "32"}, "outside"},
        {{"--max-excess", "1"}, "within"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(measure(QStringList{"wheel.csv"} + c.limits).at(0)["verdict"].toString(), QLatin1String(c.verdict))
            << c.limits.join(' ').toStdString();
    }
    KxProfile flange;
    flange.points = wheel_.points.mid(0, 800); // to 40 mm: no tread
    flange.writeToCSVFile(path("flange.csv"));
    const QJsonArray both = measure({"flange.csv", "wheel.csv", "--min-height", "20"}, 1);
    EXPECT_EQ(both.at(0)["verdict"].toString(), "not measured");
    EXPECT_TRUE(both.at(0)["heightAt70"].isNull());
    EXPECT_EQ(both.at(1)["verdict"].toString(), "within");
}

TEST_F(WheelCommand, WritesTableCsvAndReport) {
    const ToolResult result =
        run({"wheel.csv", "gone.csv", "--max-height", "20", "--csv", "c.csv", "--report", "r.html"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
    EXPECT_TRUE(result.output.contains("28.00")) << result.output.constData();
    QFile csv(path("c.csv"));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readLine(), "file;heightAt70;xAtLevel18;widthLevel2ToH13;heightExcess;verdict\n");
    EXPECT_TRUE(csv.readLine().startsWith("wheel.csv;28.0"));
    EXPECT_EQ(csv.readLine(), QByteArray("gone.csv;;;;;not read\n"));
    QFile report(path("r.html"));
    ASSERT_TRUE(report.open(QIODevice::ReadOnly));
    const QByteArray html = report.readAll();
    EXPECT_EQ(html.count("<svg"), 1);
    EXPECT_TRUE(html.contains("class=\"bad\">outside"));
    EXPECT_TRUE(html.contains("gone.csv"));
    EXPECT_EQ(run({"--help"}).exitCode, 0);
}

TEST_F(WheelCommand, WarnsAndRefusesInOneLine) {
    writeText(path("empty.csv"), "");
    writeText(path("words.whl"), "no\nnumbers\n");
    writeText(path("cut.bin"), QByteArray("\x03\x05\x00\x00\x00\x01", 6));
    writeText(path("nan.csv"), "nan;nan\n");
    writeText(path("far.csv"), "0;0\n1e30;1\n");
    const struct {
        QStringList arguments;
        int exitCode;
        const char* line;
    } cases[] = {
        {{"gone.csv"}, 3, "cannot be read"},
        {{"."}, 3, "'.'"},
        {{"empty.csv"}, 3, "holds no points"},
        {{"nan.csv"}, 3, "holds no points"},
        {{"words.whl"}, 3, "holds no points"},
        {{"cut.bin"}, 3, "no whole cloud section"},
        {{"far.csv", "--spacing", "0.1"}, 3, "too long"},
        {{}, 2, "no file"},
        {{"wheel.csv", "--min-height", "x"}, 2, "--min-height needs a number"},
        {{"wheel.csv", "--min-height", "2", "--max-height", "1"}, 2, "larger"},
        {{"wheel.csv", "--spacing", "0"}, 2, "--spacing"},
        {{"wheel.csv", "--centre", "1"}, 2, "--centre"},
        {{"wheel.csv", "--columns", "0,-2147483648"}, 2, "--columns"},
        {{"wheel.csv", "--no-such-option"}, 2, "no-such-option"},
        {{"wheel.csv", "--json", "wheel.csv"}, 2, "--json"},
        {{"wheel.csv", "--report", "no/such/folder/r.html"}, 4, "cannot write"},
    };
    for (const auto& c : cases) {
        const ToolResult result = run(c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.line << result.errors.constData();
        EXPECT_EQ(result.errors.count('\n'), 1) << result.errors.constData();
        EXPECT_TRUE(result.errors.contains(c.line)) << result.errors.constData();
        EXPECT_EQ(result.output, QByteArray()) << c.line;
    }
    EXPECT_TRUE(run({"wheel.csv", "--up"}).errors.contains("looks upside down"));
    EXPECT_TRUE(run({"wheel.csv", "--mirror"}).errors.contains("see --mirror"));
}

} // namespace
