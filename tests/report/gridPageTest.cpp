// The page of a height map beside its JSON.
#include "report/elements/heatMap.h"
#include "report/grid/gridReport.h"
#include "report/jsonOf.h"
#include "report/pageReader.h"

#include <KxInspect/Grid.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;
using namespace page_test;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// 3 rows along z and 2 columns along x, no two cells alike: a missing one, one that was cut away, two patches.
GridResult result() {
    GridResult r;
    r.scan = "folder/scan.bin";
    r.records = 31;
    r.emptyRecords = 4;
    r.map = {3, 2, 0.5f, 1.25f, -7.0f, 20.0f, {1.0f, 2.0f, 3.0f, kNaN, kNaN, 6.0f}};
    r.heights = 4;
    r.heightRange = {1.0f, 6.0f};
    r.found.blockSize = 3;
    r.found.means = {kNaN, 11.0f, 12.0f, 13.5f, kNaN, 16.0f};
    r.found.meanRange = {11.0f, 16.0f};
    r.found.edgeCut = -5.0f;
    r.found.cutCount = 7;
    r.found.cutCells = 1;
    r.found.search = {15.5f, 10.25f, 0.125f, 0.75f, 6, 0.375f};
    r.found.owners = {1, InNoPatch, 2, InNoPatch, CutAway, 2};
    r.found.patches.resize(2);
    r.found.patches[0] = {{}, 1, 0.25f, 1.5f, 0.625f, {-7.0f, -6.5f}, {0.875f, 1.125f}, {20.0f, 20.5f}, -6.75, 20.0};
    r.found.patches[1] = {{}, 2, 0.5f, 4.5f, 1.375f, {-6.25f, -6.0f}, {3.0f, 6.0f}, {20.75f, 21.0f}, -6.5, 20.75};
    r.folder = "seeds";
    r.files = {"seed-001.bin", "seed-002.bin"};
    r.warnings = {"w1"};
    return r;
}

TEST(GridPage, ShowsWhatTheJsonSays) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readPage(kxreport::gridReport(result()));
    EXPECT_EQ(page.subtitle, "scan.bin, 31 records");
    const QString rows = QString::number(json["rows"].toInt()), columns = QString::number(json["columns"].toInt());
    const std::map<QString, ReadCell> facts = {
        {"Grid, rows \u00d7 columns", {rows + " \u00d7 " + columns, ""}},
        {"Pitch", {"0.5 mm", ""}},
        {"Cells with a height", {"66.7 %", ""}},
        {"Lowest, highest cell",
         {text(json["heightRange"][0], 2) + ", " + text(json["heightRange"][1], 2) + " mm", ""}},
        {"Seeds", {"2", "good"}},
        {"Heights in seeds", {"75.0 %", ""}}};
    EXPECT_EQ(page.facts, facts);
    EXPECT_EQ(json["step"].toDouble(), 0.5);
    EXPECT_EQ(json["heights"].toInt(), 4);
    for (int i = 0; i < 2; ++i) {
        const QJsonValue seed = json["seeds"][i];
        const auto range = [&](const char* axis) {
            return text(seed[QLatin1String(axis)][0], 1) + " to " + text(seed[QLatin1String(axis)][1], 1);
        };
        EXPECT_EQ(page.tables.at(0).row(size_t(i)),
                  (QStringList{QString::number(i + 1), QString::number(seed["cells"].toInt()), text(seed["area"], 1),
                               text(seed["mean"], 3), text(seed["deviation"], 3), text(seed["y"][0], 3),
                               text(seed["y"][1], 3), range("x"), range("z"), seed["file"].toString()})
                      .join('|'));
    }
    EXPECT_EQ(page.tables[0].headers.join('|'),
              "seed|cells|area, mm\u00b2|mean height, mm|standard deviation, mm|lowest, mm|highest, mm|x from to, mm|z "
              "from to, mm|file");
    EXPECT_EQ(page.warnings, QStringList("Warning: w1"));
    GridResult none = result();
    none.found.patches.clear();
    none.files.clear();
    EXPECT_EQ(readPage(kxreport::gridReport(none)).facts.at("Seeds"), (ReadCell{"0", "bad"}));
}

/// The colours of the cells of a map, whose rows run to the right and whose columns run upwards.
std::vector<std::vector<int>> colours(const QJsonValue& cells, const QJsonValue& range) {
    std::vector<std::vector<int>> pixels(2, std::vector<int>(3));
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 2; ++column) {
            const QJsonValue value = cells[2 * row + column];
            const double part = (value.toDouble() - range[0].toDouble()) / (range[1].toDouble() - range[0].toDouble());
            const double step = std::round(part * 254.0) / 254.0; // the colours of a palette
            pixels[size_t(1 - column)][size_t(row)] = value.isNull() ? -1 : int(kxreport::heightColour(step));
        }
    }
    return pixels;
}

TEST(GridPage, DrawsEachCellInItsPlace) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readPage(kxreport::gridReport(result()));
    const ReadPlot heights = page.plot("Height map"), means = page.plot("Block means"), seeds = page.plot("Seeds");
    EXPECT_EQ(heights.xLabel, "z along the scan, mm");
    EXPECT_EQ(heights.yLabel, "x across the scan, mm");
    // Half a cell around the centres: rows at z = 20, 20.5, 21, columns at x = -7, -6.5.
    for (const ReadPlot* const plot : {&heights, &seeds}) {
        plot->expectNear(plot->items.at(0).points.at(0), {19.75, -7.25});
        plot->expectNear(plot->items.at(0).points.at(1), {21.25, -6.25});
    }
    EXPECT_EQ(readPng(heights.items.at(0).png), colours(json["pictures"]["heights"], json["heightRange"]));
    // A block of 3 x 3 cells ends before its cell: its middle is two cells before.
    means.expectNear(means.items.at(0).points.at(0), {18.75, -8.25});
    EXPECT_EQ(readPng(means.items.at(0).png), colours(json["pictures"]["means"], json["meanRange"]));
    EXPECT_TRUE(means.caption.contains("3 \u00d7 3 cells") && means.caption.contains("cut away at an edge"));
    const int other = seeds.legend.at("heights outside the seeds").second.mid(1).toInt(nullptr, 16);
    const int cut = seeds.legend.at("cut away at the edges").second.mid(1).toInt(nullptr, 16);
    const auto pixels = readPng(seeds.items.at(0).png);
    ASSERT_EQ(pixels.size(), 2u);
    const int first = pixels[1][0], second = pixels[1][1];
    EXPECT_EQ(pixels, (std::vector<std::vector<int>>{{other, -1, second}, {first, second, cut}}));
    EXPECT_EQ(std::set<int>({first, second, cut, other}).size(), 4u);
    for (int i = 0; i < 2; ++i) {
        seeds.expectNear(seeds.placeOf(QString::number(i + 1)),
                         {json["pictures"]["centreZ"][i].toDouble(), json["pictures"]["centreX"][i].toDouble()});
    }
    EXPECT_EQ(seeds.caption, "Connected patches without steps, with their numbers. Search: levels from 15.5 down to "
                             "10.25 mm, 0.125 mm apart, tolerance 0.75 mm, at least 6 cells, only downwards from "
                             "0.375 mm below the first cell.");
}

TEST(GridPage, ListsTheFirstOfManySeeds) {
    GridResult r = result();
    const QString left = "The first 500 of 501 seeds.";
    r.found.patches.assign(500, r.found.patches.at(0));
    EXPECT_FALSE(kxreport::gridReport(r).contains("The first 500"));
    r.found.patches.push_back(r.found.patches.at(0));
    EXPECT_TRUE(kxreport::gridReport(r).contains(left));
    EXPECT_EQ(readPage(kxreport::gridReport(r)).tables.back().rows.size(), 500u);
}

TEST(GridPage, JoinsCellsOfLargeMaps) {
    GridResult r = result();
    r.map.rows = 2801; // three cells share a pixel, the last two columns another one
    r.map.columns = 5;
    const std::size_t cells = r.map.position(r.map.rows, 0);
    r.map.heights.assign(cells, 1.0f);
    r.found.means.assign(cells, 11.0f);
    r.found.owners.assign(cells, InNoPatch);
    r.map.heights[r.map.position(2800, 3)] = 6.0f;
    r.map.heights[r.map.position(2800, 4)] = kNaN;
    r.map.heights[r.map.position(2799, 3)] = 5.0f;
    r.map.heights[r.map.position(2799, 4)] = kNaN;
    r.found.owners[r.map.position(4, 1)] = 2;
    const ReadPage page = readPage(kxreport::gridReport(r));
    const auto heights = readPng(page.plot("Height map").items.at(0).png);
    ASSERT_EQ(heights.size(), 2u);
    ASSERT_EQ(heights[0].size(), 934u);
    EXPECT_EQ(heights[0][933], int(kxreport::heightColour(std::round(0.9 * 254.0) / 254.0))) << "mean of 5 and 6";
    EXPECT_EQ(heights[1][933], int(kxreport::heightColour(0.0)));
    page.plot("Height map").expectNear(page.plot("Height map").items[0].points.at(1), {19.75 + 934 * 1.5, -7.25 + 3.0});
    const auto seeds = readPng(page.plot("Seeds").items.at(0).png);
    EXPECT_NE(seeds[1][1], seeds[1][0]) << "a patch prevails over other cells of its pixel";
    EXPECT_EQ(seeds[0][1], seeds[1][0]);
}

} // namespace
