// Plots: where points are drawn, to the pixel. The area of this plot is 100 pixels wide and 50 high: x from 72 to 172 and
// y from 36 to 86, as the margins are 72, 16, 36 and 46 pixels.
#include "report/elements/plot.h"
#include "report/pageReader.h"

#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace kxreport;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// 10 pixels for 1 in x, 2 pixels for 1 in y.
Plot plotOf(const QString& title = "t") {
    return {"p<", title, 188, 132, {"x, mm", {-2.0, 8.0}}, {"y, mm", {5.0, 30.0}}};
}

void expectIn(const Plot& plot, const char* markup) {
    EXPECT_TRUE(plot.svg().contains(markup)) << markup << "\n" << plot.svg().toStdString();
}

TEST(Plot, LinesRunFromPointToPointAndBreakAtMissingOnes) {
    Plot plot = plotOf();
    // x = -2 is the left border, y = 5 the lower one; (0.02, 10.05) is less than half a pixel from the point before.
    plot.addLine({{-2, 5}, {0, 10}, {0.02, 10.05}, {8, 30}, {kNaN, 7}, {1, 7}, {2, kInfinity}, {3, 8}},
                 {"#123456", 2.5});
    expectIn(plot, "<path d=\"M72 86L92 76L172 36M102 82M122 80\" fill=\"none\"");
    expectIn(plot, "stroke=\"#123456\" stroke-width=\"2.5\"/>");
    Plot close = plotOf(); // half a pixel in one direction is enough
    close.addLine({{0, 10}, {0.05, 10}, {0.05, 10.25}}, {"#123456", 1, "4 3"});
    expectIn(close, "d=\"M92 76L92.5 76L92.5 75.5\"");
    expectIn(close, "stroke-dasharray=\"4 3\"");
    Plot far = plotOf(); // renderers take no larger numbers
    far.addLine({{-1e30, 1e30}, {1e30, -1e30}}, {});
    expectIn(far, "d=\"M-100000 -100000L100000 100000\"");
}

TEST(Plot, DotsAreDrawnOnceAndInsideOnly) {
    Plot plot = plotOf();
    // -9.21 is 0.1 pixels left of the picture, 9.61 right of it (188), 48.1 above (0), -18.1 below (132).
    plot.addDots({{0, 10},
                  {0.05, 10},
                  {0.3, 10},
                  {-9.2, 10},
                  {-9.21, 10},
                  {9.6, 10},
                  {9.61, 10},
                  {0, 48},
                  {0, 48.1},
                  {0, -18},
                  {0, -18.1},
                  {kNaN, 10},
                  {0, -kInfinity}},
                 "#654321", 2.0);
    expectIn(plot, "<path d=\"M92 76h0M95 76h0M0 76h0M188 76h0M92 0h0M92 132h0\"");
    const page_test::ReadPage page = page_test::readPage("<main>" + plot.svg() + "</main>");
    EXPECT_EQ(page.plots.at(0).items.at(0).points.size(), 6u);
    EXPECT_EQ(page.plots.at(0).items.at(0).size, 2.0);
}

TEST(Plot, BandsBoxesMarksAndImages) {
    Plot plot = plotOf();
    plot.addBand(25, 10, "#00ff00");
    expectIn(plot, "<rect x=\"72\" y=\"46\" width=\"100\" height=\"30\" fill=\"#00ff00\" fill-opacity=\"0.15\"/>");
    plot.addLevel(20, {});
    expectIn(plot, "d=\"M72 56L172 56\"");
    plot.addStraight(2, 10, {}); // 6 at the left border, 26 at the right one
    expectIn(plot, "d=\"M72 84L172 44\"");
    plot.addBox(1, 3, 10, 20, "#0000ff", "a<b");
    expectIn(plot, "<rect x=\"102\" y=\"56\" width=\"20\" height=\"20\" fill=\"#0000ff\"><title>a&lt;b</title></rect>");
    plot.addBox(1, 1.1, 10, 10.5, "#0000ff", ""); // never thinner than 2 pixels
    expectIn(plot, "<rect x=\"102\" y=\"75\" width=\"2\" height=\"2\" fill=\"#0000ff\"></rect>");
    plot.addMark({4, 25}, "#ff0000", 3.5, "m&m");
    expectIn(plot, "<circle cx=\"132\" cy=\"46\" r=\"3.5\" fill=\"#ff0000\"><title>m&amp;m</title></circle>");
    plot.addMark({kNaN, 25}, "#ff0000", 3.5, {});
    plot.addMark({4, kNaN}, "#ff0000", 3.5, {});
    EXPECT_EQ(plot.svg().count("<circle"), 1) << "no mark without a place";
    plot.addImage(-1, 4, 10, 25, {2, 1, {1, 2}, {0, 1, 2}});
    expectIn(plot, "<image x=\"82\" y=\"46\" width=\"50\" height=\"30\" preserveAspectRatio=\"none\"");
    plot.addText({3, 20}, "<t>", "#111111", 20);
    expectIn(plot,
             "<text x=\"122\" y=\"63\" text-anchor=\"middle\" font-size=\"20\" fill=\"#111111\">&lt;t&gt;</text>");
    plot.addRowLabel(20, "row", "#222222");
    expectIn(plot, "<text x=\"64\" y=\"60\" text-anchor=\"end\" font-weight=\"600\" fill=\"#222222\">row</text>");
    plot.addBadge({3, 20}, "12"); // 24 pixels wide around its middle
    expectIn(plot, "<rect x=\"110\" y=\"48\" width=\"24\" height=\"16\" rx=\"8\"");
}

TEST(Plot, AxesHaveTicksGridAndLabels) {
    const Plot plot("p", "<title>", 288, 132, {"x < y", {0.0, 20.0}}, {"h", {-10.0, 10.0}}); // 200 x 50 pixels
    expectIn(plot, "aria-label=\"&lt;title&gt;\"");
    expectIn(plot, "viewBox=\"0 0 288 132\"");
    expectIn(plot, "d=\"M72 36V86M172 36V86M272 36V86M72 86H272M72 61H272M72 36H272\"");
    expectIn(plot, "<text x=\"172\" y=\"103\" text-anchor=\"middle\">10</text>");
    expectIn(plot, "<text x=\"65\" y=\"40\" text-anchor=\"end\">10</text>");
    expectIn(plot, "<text x=\"65\" y=\"90\" text-anchor=\"end\">-10</text>");
    expectIn(plot, "<text x=\"172\" y=\"124\" text-anchor=\"middle\" class=\"axis\">x &lt; y</text>");
    expectIn(plot, "<text transform=\"translate(15 61) rotate(-90)\" text-anchor=\"middle\" class=\"axis\">h</text>");
    expectIn(plot, "<clipPath id=\"clip-p\"><rect x=\"72\" y=\"36\" width=\"200\" height=\"50\"/></clipPath>");
    expectIn(plot, "<g clip-path=\"url(#clip-p)\">");
    const Plot counts("p", "t", 552, 132, {"n", {0.5, 2.5}, true, true},
                      {"", {0, 1}, false}); // whole numbers, no ticks
    expectIn(counts, "<path d=\"M188 36V86M420 36V86\"");
    EXPECT_EQ(counts.svg().count("text-anchor=\"end\""), 0);
    EXPECT_EQ(Plot("p", "t", 188, 132, {"", {3.0, 3.0}}, {"", {}}).svg().count("nan"), 0);
}

TEST(Plot, ColourScaleStandsBesideTheArea) {
    Plot plot("p", "t", 262, 182, {"x", {0.0, 10.0}}, {"y", {0.0, 10.0}});
    plot.addColourScale({20.0, 40.0}, "h, mm"); // 100 x 100 pixels are left for the plot
    EXPECT_EQ(plot.areaWidth(), 100.0);
    expectIn(plot, "x1=\"0\" y1=\"1\" x2=\"0\" y2=\"0\"><stop offset=\"0\" stop-color=\"#1b1f5e\"/>");
    expectIn(plot, "<stop offset=\"1\" stop-color=\"#fde74c\"/></linearGradient>");
    expectIn(plot, "<rect x=\"186\" y=\"36\" width=\"14\" height=\"100\" fill=\"url(#scale-p)\"");
    for (const char* const tick :
         {"<path d=\"M200 136h4\" stroke=\"var(--frame)\"/><text x=\"206\" y=\"140\">20</text>",
          "<path d=\"M200 86h4\" stroke=\"var(--frame)\"/><text x=\"206\" y=\"90\">30</text>",
          "<path d=\"M200 36h4\" stroke=\"var(--frame)\"/><text x=\"206\" y=\"40\">40</text>"}) {
        expectIn(plot, tick);
    }
    expectIn(plot, ">h, mm</text>");
    Plot flat = plot;
    flat.addColourScale({7.0, 7.0}, {}); // one height only
    EXPECT_EQ(flat.svg().count("nan"), 0);
    expectIn(flat, ">7.0</text>");
}

TEST(Plot, LegendShowsWhatIsDrawn) {
    Plot plot("p", "t", 288, 132, {"x", {0.0, 10.0}}, {"y", {0.0, 10.0}});
    plot.addLine({{1, 1}}, {"#000001"}, "line");
    plot.addDots({{1, 1}}, "#000002", 2.0, "dots");
    plot.addBand(1, 2, "#000003", "band");
    plot.addLegend("box & more text", "#000004");
    plot.addLegendMark("mark", "#000005");
    plot.addLine({{2, 2}}, {"#000006"});
    const page_test::ReadPlot read = page_test::readPage("<main>" + plot.svg() + "</main>").plots.at(0);
    using Sample = std::pair<QString, QString>;
    const std::map<QString, Sample> expected = {{"line", {"line", "#000001"}},
                                                {"dots", {"dots", "#000002"}},
                                                {"band", {"band", "#000003"}},
                                                {"box & more text", {"box", "#000004"}},
                                                {"mark", {"mark", "#000005"}}};
    EXPECT_EQ(read.legend, expected);
    // What would reach 272, by the upper bound of its width, begins a row.
    expectIn(plot, "<g class=\"legend\" transform=\"translate(72 -4)\" fill=\"none\"><path d=\"M0 0h22\"");
    expectIn(plot, "<g class=\"legend\" transform=\"translate(72 26)\"");
    Plot narrow = plotOf(); // 100 pixels wide: a row for each of four, two of them above the usual top
    for (const char* const text : {"one", "two", "three", "a name that is longer than the whole plot is wide"}) {
        narrow.addLegend(text, "#000001");
    }
    expectIn(narrow, "viewBox=\"0 -30 188 162\"");
    expectIn(narrow, "translate(72 -19)");
    EXPECT_TRUE(narrow.svg().contains(QRegularExpression("plot is wide</title>a name t[a-z ]{1,5}\u2026</text>")));
}

TEST(Plot, TextsMoveOffLinesAndEachOther) {
    Plot plot("p", "t", 288, 282, {"x", {0.0, 20.0}}, {"y", {0.0, 20.0}}); // 10 pixels for 1
    plot.addLine({{0, 10}, {20, 10}}, {"#000001"});
    plot.addText({10, 15}, "free", "#111111");
    plot.addText({10, 10}, "on the line", "#111111");
    plot.addText({10, 15}, "on the text", "#111111");
    const page_test::ReadPlot read = page_test::readPage("<main>" + plot.svg() + "</main>").plots.at(0);
    EXPECT_NEAR(read.placeOf("free").y(), 15, 0.01);
    EXPECT_GE(std::abs(read.placeOf("on the line").y() - 10), 0.7);
    EXPECT_LE(std::abs(read.placeOf("on the line").y() - 10), 1.1);
    const QPointF moved = read.placeOf("on the text") - read.placeOf("free");
    EXPECT_TRUE(std::abs(moved.y()) >= 1.4 || std::abs(moved.x()) >= 4) << moved.x() << ' ' << moved.y();
}

} // namespace
