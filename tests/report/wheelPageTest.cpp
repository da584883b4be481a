// The page of measured wheels beside their JSON.
#include "report/jsonOf.h"
#include "report/pageReader.h"
#include "report/wheel/wheelReport.h"

#include <KxInspect/Wheel.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;
using namespace page_test;

/// Wheels of every verdict: within, outside by one measure of four, not measured, not read.
WheelResults wheels() {
    WheelResults results;
    results.limits.heightAt70 = {27.5f, 31.0f};
    results.limits.xAtLevel18 = {{}, 33.0f};
    results.limits.heightExcess = {-0.75f, {}};
    results.wheels = {{.file = "folder/a<1>.csv",
                       .measures = {28.25f, 32.5f, 9.625f, 0.25f, 28.125f, 31.5f, 10.5f, 0.75f, 0.0625f, 134.0f},
                       .intervals = {{{28.0f, 28.5f}, {32.25f, 32.5f}}},
                       .section = {{0.0f, 20.0f}, {16.0f, 0.0f}, {32.0f, 18.0f}, {70.0f, 28.25f}, {134.0f, 30.0f}},
                       .measured = {{1.0f, 19.0f}, {17.0f, 1.0f}, {69.0f, 27.0f}},
                       .widthStart = 22.75f,
                       .places = {{{16.0f, 0.0f}},
                                  {{70.0f, 28.125f}},
                                  {{21.0f, 2.0f}},
                                  {{31.5f, 18.125f}},
                                  {{80.0f, 29.0f}},
                                  {{120.0f, 28.25f}},
                                  134.0f}},
                      {.file = "b.whl", .warnings = {"is narrow"}, .measures = {29.5f, 33.5f, 10.75f, -0.5f}},
                      {.file = "c.bin", .measures = {.xAtLevel18 = 31.25f}, .reasons = {"short"}},
                      {.file = "d.bin", .error = "cannot be read", .verdict = WheelVerdict::NotRead},
                      {.file = "e.bin"}};
    results.wheels[4].reasons.fill("empty");
    for (WheelResult& wheel : results.wheels) {
        if (wheel.error.empty()) {
            wheel.verdict = verdictOf(wheel.measures, results.limits);
        }
    }
    results.version = "7.8.9";
    return results;
}

TEST(WheelPage, ShowsWhatTheJsonSays) {
    const QJsonObject json = jsonOf(wheels());
    const ReadPage page = readPage(kxreport::wheelReport(wheels()));
    const ReadTable& table = page.tables.at(1);
    const std::pair<const char*, QString> columns[] = {{"heightAt70", "level of the tape circle, mm"},
                                                       {"xAtLevel18", "flange thickness at level 18, mm"},
                                                       {"widthLevel2ToH13", "flank width, level 2 to h-13, mm"},
                                                       {"heightExcess", "flange height excess, mm"}};
    const char* const tones[5][5] = {{"good", "good", "", "good", "good"}, // of four measures and the verdict
                                     {"good", "bad", "", "good", "bad"},
                                     {"bad", "good", "", "bad", "bad"},
                                     {"bad", "bad", "", "bad", "bad"},
                                     {"bad", "bad", "", "bad", "bad"}};
    const char* const verdicts[] = {"within", "outside", "not measured", "not read", "not measured"};
    ASSERT_EQ(table.rows.size(), 6u);
    for (int i = 0; i < 5; ++i) {
        const QJsonValue wheel = json["wheels"][i];
        EXPECT_EQ(table.at(i, "file").text, wheel["file"].toString().section('/', -1));
        for (size_t column = 0; column < 4; ++column) {
            const QJsonValue value = wheel[QLatin1String(columns[column].first)];
            const QString interval = i > 0         ? ""
                                     : column == 0 ? " \u00b1 0.250"
                                     : column == 1 ? " (32.250 to 32.500)"
                                                   : "";
            EXPECT_EQ(table.at(i, columns[column].second),
                      (ReadCell{value.isDouble() ? text(value, 3) + interval : "-", tones[i][column]}));
        }
        EXPECT_EQ(table.at(i, "verdict"), (ReadCell{verdicts[i], tones[i][4]}));
        EXPECT_EQ(wheel["verdict"].toString("not read"), verdicts[i]);
    }
    EXPECT_EQ(table.row(5), QString("allowed|\u2265 27.5, \u2264 31|\u2264 33|-|\u2265 -0.75|"));
    EXPECT_EQ(page.tables.at(0).row(0), QString("a<1>.csv|28.125|31.500|10.500|0.750|0.0625|134.000|within"));
    EXPECT_EQ(page.facts.at("Wheels measured"), (ReadCell{"3 of 5", "bad"}));
    EXPECT_EQ(page.facts.at("Judged by limits"), (ReadCell{"2 of 5", "bad"}));
    EXPECT_EQ(page.facts.at("Outside limits, of those judged"), (ReadCell{"1 of 2", "bad"}));
    EXPECT_EQ(page.headings, (QStringList{"a<1>.csv", "b.whl", "c.bin", "d.bin", "e.bin"}));
    EXPECT_EQ(page.warnings,
              (QStringList{"Warning: The profile is narrow.", "Warning: No level of the tape circle: short.",
                           "No result: The file cannot be read.",
                           "No result: The profile has no flange or tread to measure: empty."}));
    EXPECT_EQ(page.plots.size(), 8u) << "two of each, and none of the wheel that was not read";
    EXPECT_EQ(page.paragraphs.last(), "KxMath 7.8.9.");
}

TEST(WheelPage, DrawsTheMeasures) {
    const QJsonObject json = jsonOf(wheels());
    const ReadPlot plot = readPage(kxreport::wheelReport(wheels())).plots.at(1);
    const QJsonValue drawn = json["pictures"]["wheels"][0];
    EXPECT_EQ(plot.title, "Profile of a<1>.csv");
    EXPECT_GT(plot.unitsPerPixel.x(), 0.0);
    EXPECT_LT(plot.unitsPerPixel.y(), 0.0) << "levels grow upwards on the drawing";
    EXPECT_NEAR(plot.unitsPerPixel.x(), -plot.unitsPerPixel.y(), 1e-3);
    plot.expectPoints("points of the file", points(drawn["section"]));
    plot.expectPoints("measured profile", points(drawn["measured"]));
    // h = 28.25 at 70 mm; level 18; from level 2 at 22.75 down to level h - 13 = 15.25, 9.625 mm across.
    plot.expectPoints("level of the tape circle, h", {{70, 0}, {70, 28.25}});
    plot.expectPoints("flange thickness at level 18", {{0, 18}, {32.5, 18}});
    plot.expectNear(plot.withTooltip("level of the tape circle: 28.25 mm").points.at(0), {70, 28.25});
    plot.expectNear(plot.withTooltip("flange thickness at level 18: 32.50 mm").points.at(0), {32.5, 18});
    plot.expectNear(plot.withTooltip("level 2").points.at(0), {22.75, 2});
    plot.expectNear(plot.withTooltip("level h-13").points.at(0), {32.375, 15.25});
    plot.expectPoints("flank width, level 2 to h-13", {{22.75, 15.25}, {32.375, 15.25}});
    const QString dashed = plot.legend.at("flank width, level 2 to h-13").second + " 3 3";
    const auto down =
        std::find_if(plot.items.begin(), plot.items.end(), [&](const auto& i) { return i.colour == dashed; });
    ASSERT_NE(down, plot.items.end());
    plot.expectNear(down->points.at(0), {22.75, 2});
    plot.expectNear(down->points.at(1), {22.75, 15.25});
    for (const char* const length : {"28.25 mm", "32.50 mm", "9.63 mm"}) {
        EXPECT_FALSE(std::isnan(plot.placeOf(length).x())) << length;
    }
    for (const auto& [name, level] : {std::pair{"level 2", 2.0}, {"level 18", 18.0}, {"level h-13", 15.25}}) {
        EXPECT_NEAR(plot.placeOf(name).y(), level, 1.3) << name; // the contour may push it, less than to the next
    }
}

TEST(WheelPage, DrawsTheMeasuresOfRailways) {
    const ReadPlot plot = readPage(kxreport::wheelReport(wheels())).plots.at(0);
    const std::pair<const char*, std::vector<QPointF>> lines[] = {
        {"flange height (Sh)", {{70, 0}, {70, 28.125}}},
        {"flange thickness (Sd), 10 mm above the tape circle", {{0, 18.125}, {31.5, 18.125}}},
        {"flange slope (qR), from 2 mm below the tip", {{21, 14.625}, {31.5, 14.625}}},
        {"tread slope at the tape circle", {{60, 27.5}, {80, 28.75}}},
        {"hollow of the tread", {{80, 28.25}, {80, 29}}},
        {"rim width", {{0, 30}, {134, 30}}}};
    for (const auto& [name, points] : lines) {
        plot.expectPoints(name, points);
    }
    for (const char* const text :
         {"Sh 28.13 mm", "Sd 31.50 mm", "qR 10.50 mm", "hollow 0.75 mm", "slope 0.0625", "rim 134.00 mm"}) {
        EXPECT_FALSE(std::isnan(plot.placeOf(text).x())) << text;
    }
}

} // namespace
