// kxmath conicity: values, forms of input, warnings and refusals.
#include "kxmath/toolRun.h"
#include "shapes/crossSections.h"

namespace {

using namespace tool_test;

class ConicityCommand : public ToolTest {
protected:
    ConicityCommand() : ToolTest("conicity") {
        kxtool::appendConicalWheel(wheel_, 0.1f);
        kxtool::appendRoundRail(rail_, 80.0f);
        wheel_.writeToCSVFile(path("wheel.csv"));
        rail_.writeToCSVFile(path("rail.csv"));
    }

    static QStringList with(const char* wheel, const char* rail, const QStringList& more) {
        return QStringList{"--wheel1", wheel,  "--wheel2",       wheel,  "--rail1",       rail, "--rail2", rail,
                           "--gauge",  "1442", "--back-to-back", "1360", "--gauge-depth", "0"} +
               more;
    }

    KxProfile wheel_, rail_;
};

TEST_F(ConicityCommand, ReadsAllFormsOfProfiles) {
    static_cast<KxPointCloud<KxPointXY>&>(wheel_).writeToFile(path("wheel.bin"));
    write("wheel.whl", gaugeText(wheel_, 0, 1, 1));
    write("up.whl", gaugeText(wheel_, 0, 1, -1));
    write("inwards.ban", gaugeText(rail_, 0, -1, 1));
    const QList<QStringList> cases = {with("wheel.csv", "rail.csv", {}), with("wheel.bin", "rail.csv", {}),
                                      with("wheel.whl", "rail.csv", {}), with("up.whl", "rail.csv", {"--up", "wheels"}),
                                      with("wheel.csv", "inwards.ban", {"--mirror", "rail1,rail2"})};
    for (const QStringList& arguments : cases) {
        const QJsonValue result = json(arguments);
        EXPECT_NEAR(result["shownConicity"].toDouble(), 0.1, 0.005) << arguments[1].toStdString();
        EXPECT_GT(result["conicity"].toArray().size(), 50);
        EXPECT_EQ(result["warnings"].toArray().size(), 0);
    }
}

TEST_F(ConicityCommand, WithoutAResultTheOutputsSayWhy) {
    const QStringList outputs = {"--mirror", "wheel2", "--csv", "c.csv", "--report", "r.html", "--json", "-"};
    const QJsonValue json = QJsonDocument::fromJson(run(with("wheel.csv", "rail.csv", outputs), 1).output).object();
    EXPECT_EQ(json["reasons"]["shownConicity"].toString(), "no conicity can be calculated from these profiles");
    EXPECT_TRUE(json["shownConicity"].isNull() && json["conicity"].toArray().isEmpty());
    EXPECT_EQ(read("c.csv"), "amplitude,conicity\n");
    const QByteArray page = read("r.html");
    EXPECT_TRUE(page.contains("<p class=\"failure\"><strong>No result:</strong> no conicity can be calculated"));
    EXPECT_TRUE(page.contains("class=\"bad\">-<")) << page.left(6000).constData();
    EXPECT_EQ(page.count("<svg"), 2);
}

TEST_F(ConicityCommand, WarnsWhereInputContradictsTheMethod) {
    const std::tuple<QStringList, int, const char*> cases[] = {
        {{"--up", "wheels"}, 0, "wheel1 looks upside down"},
        {{"--mirror", "wheel2"}, 1, "wheel2 has its lowest point far from the flange back"},
        {{"--back-to-back", "1360.1"}, 0, "no multiple of 0.2 mm"},
        {{"--amplitude", "60"}, 0, "no conicity at the amplitude of 60 mm: the curve ends at"},
        {{"--amplitude", "12"}, 0, "the difference of radii jumps"},
    };
    for (const auto& [more, exitCode, warning] : cases) {
        EXPECT_TRUE(run(with("wheel.csv", "rail.csv", more), exitCode).errors.contains(warning)) << warning;
    }
}

} // namespace
