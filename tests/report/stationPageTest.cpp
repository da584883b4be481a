// The pages about lines of a station: of a fit, and of a pass in which no wheel was found.
#include "report/pageReader.h"

#include "report/settings/fitReport.h"
#include "report/train/passReport.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace KxInspect;
using namespace page_test;

/// A fit with other numbers everywhere; pair 1 of pass 1 is off by what is allowed, pair 2 by more, pair 1 of pass 2 was not measured.
StationFit someFit() {
    StationFit fit;
    fit.baseDistance = 1361.25f;
    fit.maxResidual = 0.5;
    fit.minProfilesInWheel = 9;
    fit.fault = "the measured distances differ";
    fit.warnings = {"something is odd"};
    fit.pairs = {
        {1, 1, 1360.5, 1361.0, 0.5}, {1, 2, 1362.0, 1360.0, -2.0}, {2, 1, std::nan(""), 1359.125, std::nan("")}};
    for (const int n : {1, 2}) {
        const auto f = static_cast<float>(n);
        FittedSensor sensor;
        sensor.number = n;
        sensor.serial = 300 + n;
        sensor.files = {"a_" + std::to_string(sensor.serial) + ".bin"};
        sensor.reference = Line{0.25f * f, 10.0f + f};
        sensor.level = Line{0.0f, 20.0f * f};
        sensor.points = {{0.0f, 15.0f}, {4.0f * f, 30.0f}, {8.0f, 50.0f}};
        sensor.profiles = 3;
        sensor.wheels = {{1, 1, 40 + n, 90 + n, 0.5 * n, -0.25}};
        fit.sensors.push_back(sensor);
    }
    return fit;
}

TEST(StationPage, ShowsLinesResidualsAndWhatIsBelow) {
    const ReadPage page = readPage(kxreport::fitReport(someFit()));
    EXPECT_EQ(page.facts.at("Settings"), (ReadCell{"not found", "bad"}));
    EXPECT_EQ(page.facts.at("Known distances").text, "2");
    EXPECT_EQ(page.facts.at("Largest residual"), (ReadCell{"2.000 mm", "bad"}));
    EXPECT_EQ(page.facts.at("Residuals, rms").text, "1.458 mm");
    const ReadPlot first = page.plot("Raw profiles of sensor 301");
    first.expectPoints("below it", {{0.0, 15.0}});
    first.expectPoints("beyond the level line", {{4.0, 30.0}, {8.0, 50.0}});
    const ReadPlot second = page.plot("Raw profiles of sensor 302");
    second.expectPoints("below it", {{0.0, 15.0}, {8.0, 30.0}});
    EXPECT_NE(first.legend.at("below it").second, second.legend.at("below it").second) << "a colour for each sensor";
    ASSERT_EQ(second.shownAs("reference").size(), 1u);
    const auto& line = second.shownAs("reference")[0]->points;
    second.expectNear(line.front(), {line.front().x(), 12.0 + 0.5 * line.front().x()});
    second.expectNear(line.back(), {line.back().x(), 12.0 + 0.5 * line.back().x()});
    const ReadPlot residuals = page.plot("Residual of each wheel pair");
    residuals.expectNear(residuals.withTooltip("pass 1, pair 2: -2.000 mm").points.at(0), {2.0, -2.0});
    const auto table = std::find_if(page.tables.begin(), page.tables.end(),
                                    [](const ReadTable& t) { return t.headers.contains("Residual, mm"); });
    ASSERT_NE(table, page.tables.end());
    EXPECT_EQ(table->row(0), "1|1|1360.500|1361.000|0.500");
    EXPECT_EQ(table->at(0, "Residual, mm").tone, "good");
    EXPECT_EQ(table->at(1, "Residual, mm").tone, "bad");
    EXPECT_EQ(table->at(2, "Residual, mm").tone, "faint");
    EXPECT_EQ(page.warnings.size(), 2) << "the fault and the warning";

    StationFit close = someFit();
    close.pairs.resize(1);
    EXPECT_EQ(readPage(kxreport::fitReport(close)).facts.at("Largest residual"), (ReadCell{"0.500 mm", "good"}));
}

TEST(StationPage, APassWithoutWheelsShowsWhy) {
    PassResult pass;
    pass.nominal = pass.baseDistance = 1361.0f;
    pass.tolerance = 2.0f;
    for (const int n : {1, 2}) {
        PassSide side;
        side.file = side.name = n == 1 ? "a_7.bin" : "b_8.bin";
        side.sensor = n;
        side.serial = 6 + n;
        side.profileRecords = 50 * n;
        side.level = {0.0f, 20.0f * static_cast<float>(n)};
        side.reference = {0.0f, 10.0f};
        pass.sides.push_back(side);
    }
    pass.sides[0].wheels.resize(1);
    pass.pairs.push_back({{0, std::nullopt}, std::nanf(""), std::nanf(""), std::nullopt, "no partner"});
    pass.rawPictures.push_back({1, 2, {{0.0f, 5.0f}, {3.0f, 30.0f}, {7.0f, 90.0f}}, 61, 700, Line{0.0f, 2.0f}});
    const std::string json = toJson(pass, Pictures::Included);
    EXPECT_EQ(toJson(passFromJson(json), Pictures::Included), json);
    const QString html = kxreport::passReport(passFromJson(json));
    EXPECT_TRUE(
        html.contains("No wheel was found in b_8.bin (SENSOR2): 61 of its 700 points lie below the level line."));
    EXPECT_FALSE(html.contains("No wheel was found in a_7.bin"));
    const ReadPlot plot = readPage(html).plot("Raw profiles of side 2");
    plot.expectPoints("below it", {{0.0, 5.0}, {3.0, 30.0}});
    plot.expectPoints("beyond the level line", {{7.0, 90.0}});
    EXPECT_TRUE(plot.caption.contains("2 of 100 profiles"));
    EXPECT_TRUE(plot.caption.contains("2 of 3 lie below the level line, 1 below the reference line"));
    EXPECT_EQ(plot.legend.count("low"), 1u);
}

} // namespace
