// kxmath wheel: measures against the closed form, forms of input, verdicts and refusals.
#include "inspect/wheel/rimSection.h"
#include "kxmath/toolRun.h"
#include "simulator/wheelContour.h"

#include <KxInspect/KxMathTypes.h>

namespace {

using namespace tool_test;

class WheelCommand : public ToolTest {
protected:
    WheelCommand() : ToolTest("wheel") {
        wheel_.points =
            pointsFor(2601, [](int i) { return at(i * 0.05, kxsim::s1002Height(i * 0.05 - kxsim::kTapeCircle)); });
        wheel_.writeToCSVFile(path("wheel.csv"));
    }

    void writePart(const char* name, qsizetype first, qsizetype count) const {
        KxProfile part;
        part.points = wheel_.points.mid(first, count);
        part.writeToCSVFile(path(name));
    }

    QJsonArray measure(const QStringList& arguments, int exitCode = 0) const {
        return json(arguments, exitCode)["wheels"].toArray();
    }

    KxProfile wheel_;
};

TEST_F(WheelCommand, MeasuresAllFormsOfWheels) {
    static_cast<KxPointCloud<KxPointXY>&>(wheel_).writeToFile(path("wheel.bin"));
    write("wheel.whl", gaugeText(wheel_, 0, 1, 1));
    write("turned.whl", gaugeText(wheel_, 0, -1, -1));
    write("tape.whl", gaugeText(wheel_, -70, 1, 1));
    writePart("late.csv", 40, -1); // from 2 mm on
    // The section of a rim that stands at an angle about a wheel's centre off the origin.
    KxPointCloud<KxPointXYZ> rim;
    KxInspect::detail::appendRimSection(KxInspect::fromKxProfile(wheel_).points, rim);
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
                                      {"late.csv", "--flange-back", "0"},
                                      {"wheel.csv", "--spacing", "0.05"},
                                      {"rim.bin", "--centre", "100,20"}};
    for (const QStringList& arguments : cases) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const QJsonValue wheel = measure(arguments).at(0);
        EXPECT_NEAR(wheel["heightAt70"].toDouble(), 28.0, 0.02);
        EXPECT_NEAR(wheel["heightExcess"].toDouble(), 0.0, 0.02);
        EXPECT_NEAR(wheel["xAtLevel18"].toDouble(), 32.5, 0.12);
        EXPECT_NEAR(wheel["widthLevel2ToH13"].toDouble(), 9.50, 0.12);
        EXPECT_EQ(wheel["warnings"].toArray().size(), 0);
    }
    for (const char* const found : {"turned.whl", "late.csv"}) {
        const QJsonValue wheel = measure({found}).at(0);
        EXPECT_NEAR(wheel["xAtLevel18"].toDouble(), 32.5, 0.12) << found;
        EXPECT_EQ(wheel["warnings"].toArray().size(), 1) << found;
    }
    EXPECT_TRUE(run({"wheel.csv", "--up"}, 1).errors.contains("is taken to have y up and x outwards"));
    EXPECT_TRUE(run({"turned.whl", "--as-is"}, 1).errors.contains("is taken to have y down and x outwards"));
}

TEST_F(WheelCommand, JudgesByLimits) {
    const std::pair<QStringList, QString> cases[] = {
        {{}, ""},
        {{"--min-height", "27.9", "--max-height", "28.1"}, "within"},
        {{"--max-width", "9", "--min-height", "20"}, "outside"},
        {{"--max-excess", "1"}, "within"},
    };
    for (const auto& [limits, verdict] : cases) {
        EXPECT_EQ(measure(QStringList("wheel.csv") + limits).at(0)["verdict"].toString(), verdict)
            << limits.join(' ').toStdString();
    }
    writePart("flange.csv", 0, 800); // to 40 mm: no tread
    const QStringList none = {"flange.csv", "--min-height", "20"};
    EXPECT_TRUE(run(none, 1).errors.contains("0 of 1 wheels judged by the limits"));
    const QJsonArray both = measure({"flange.csv", "wheel.csv", "--min-height", "20"}, 1);
    EXPECT_EQ(both.at(0)["verdict"].toString(), "not measured");
    EXPECT_TRUE(both.at(0)["heightAt70"].isNull());
    EXPECT_EQ(both.at(1)["verdict"].toString(), "within");
}

TEST_F(WheelCommand, FailsOnVerdicts) {
    KxProfile low = wheel_; // with a flange of 13 mm, which no wheel has
    for (KxPointXY& p : low.points) {
        p.y = std::max(p.y, 15.0f - 0.01f * p.x);
    }
    low.writeToCSVFile(path("low.csv"));
    const QStringList within = {"wheel.csv", "--max-thickness", "33"};
    const std::pair<QStringList, int> cases[] = {
        {{"wheel.csv", "--max-thickness", "30"}, 0},
        {{"wheel.csv", "--max-thickness", "30", "--fail-on", "not-judged"}, 0},
        {{"wheel.csv", "--max-thickness", "30", "--fail-on", "not-judged,out", "--csv", "c.csv"}, 5},
        {within + QStringList{"--fail-on", "out"}, 0},
        {within + QStringList{"low.csv"}, 1},
        {within + QStringList{"low.csv", "--fail-on", "not-judged", "--report", "r.html"}, 1},
        {within + QStringList{"gone.csv", "--fail-on", "not-judged"}, 3},
    };
    for (const auto& [arguments, exitCode] : cases) {
        run(arguments, exitCode);
    }
    EXPECT_TRUE(read("c.csv").contains(",outside,"));
    EXPECT_TRUE(read("r.html").contains("1 of 2"));
}

TEST_F(WheelCommand, TellsFilesOfOneNameApart) {
    for (const char* const folder : {"left", "right"}) {
        QDir(path("")).mkdir(folder);
        QFile::copy(path("wheel.csv"), path(QString(folder) + "/wheel.csv"));
    }
    const QByteArray table = run({"left/wheel.csv", path("right/wheel.csv"), "--report", "r.html"}).output;
    EXPECT_TRUE(table.contains("\nleft/wheel.csv ") && table.contains("\nright/wheel.csv ")) << table.constData();
    EXPECT_EQ(read("r.html").count(">right/wheel.csv<"), 2);
}

} // namespace
