// The page of an equivalent conicity beside its JSON.
#include "report/conicity/conicityReport.h"
#include "report/jsonOf.h"
#include "report/pageReader.h"

#include <KxInspect/Conicity.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace KxInspect;
using namespace page_test;

/// Nothing is alike on both sides. The conicity at 2 mm is missing.
ConicityResult result() {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    ConicityResult r;
    const char* const files[] = {"folder/w1.csv", "r1.csv", "w2.csv", ""};
    for (std::size_t part = 0; part < 4; ++part) {
        const float shift = static_cast<float>(part);
        r.sections[part].file = files[part];
        r.sections[part].points = {{shift, 10 + shift}, {60 + shift, -2 * shift}, {120, 3 + 4 * shift}};
    }
    r.gauge = 1435.5f;
    r.backToBack = 1360.25f;
    r.radius1 = 460.5f;
    r.radius2 = 459.25f;
    r.edgeMargin = 0.0625f;
    r.shownAmplitude = 2.5f;
    r.shownConicity = 0.21875f;
    r.conicity = {{0.5f, 0.125f}, {1.0f, 0.15625f}, {1.5f, kNaN}, {2.0f, 0.1875f}, {3.0f, 0.25f}};
    r.shownInterval = {0.1875f, 0.2578125f};
    r.intervals = {{0.0625f, 0.25f}, {0.125f, 0.1875f}, {0.125f, 0.625f}, {0.125f, 0.25f}, {0.25f, 0.25f}};
    r.rows = {{0.5f, 0.125f, {0.0625f, 0.25f}, 0.09375f},
              {1.0f, 0.15625f, {0.125f, 0.1875f}, {}},
              {1.5f, {}, {}, 0.25f},
              {4.0f, 0.25f, {}, 0.25f}};
    r.sections[Rail1].noise = {0.0625f, 0.03125f};
    r.sections[Rail1].windows = {1.5f, 7.75f};
    r.sections[Rail1].residuals = {{-3.0f, 0.0625f}, {2.0f, -0.125f}};
    r.deltaR = {{-4.0f, -1.0f}, {0.0f, 0.25f}, {5.0f, 2.5f}};
    r.contacts1 = {{0.0f, 0.1f, {33, 3}, {34, 4}, 0.0f}, {-0.5f, 0.1f, {35, 5}, {36, 6}, 1.5f}};
    r.contacts2 = {{0.0f, 0.2f, {43, 13}, {44, 14}, 0.0f}, {0.75f, 0.2f, {45, 15}, {46, 16}, -2.5f}};
    r.warnings = {"w & w"};
    r.version = "7.8.9";
    return r;
}

TEST(ConicityPage, ShowsWhatTheJsonSays) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readPage(kxreport::conicityReport(result()));
    EXPECT_EQ(page.subtitle, "Wheels w1.csv and w2.csv on rails r1.csv and rail2");
    const std::map<QString, ReadCell> facts = {
        {"equivalent conicity at " + text(json["shownAmplitude"], 1) + " mm", {"0.22 (0.19 to 0.26)", ""}},
        {"gauge, mm", {text(json["gauge"], 1), ""}},
        {"back-to-back, mm", {text(json["backToBack"], 1), ""}},
        {"rolling radii, mm", {text(json["radius1"], 1) + " / " + text(json["radius2"], 1), ""}}};
    EXPECT_EQ(page.facts, facts);
    EXPECT_EQ(page.warnings, QStringList("Warning: w & w"));
    const ReadTable& table = page.tables.at(0);
    ASSERT_EQ(table.rows.size(), 3u) << "as far as the curve goes";
    const char* const values[][3] = {
        {"0.5", "0.13 (0.06 to 0.25)", "0.0938"},
        {"1", "0.16 ± 0.03", "-"},
        {"1.5", "none: the noise of the profiles leaves it anywhere from 0.125 to 0.625", "0.2500"}};
    for (size_t row = 0; row < 3; ++row) {
        EXPECT_EQ(table.at(row, "amplitude, mm").text, values[row][0]);
        EXPECT_EQ(table.at(row, "equivalent conicity, 95 % interval").text, QString::fromUtf8(values[row][1]));
        EXPECT_EQ(table.at(row, "equivalent conicity without smoothing").text, values[row][2]);
    }
    const ReadTable& noise = page.tables.at(1);
    EXPECT_EQ(noise.at(1, "noise in y, mm").text, text(json["noise"]["rail1"]["y"], 4));
    EXPECT_EQ(noise.at(1, "smoothing").text, "smoothed over 1.5 to 7.8 mm");
    EXPECT_EQ(noise.at(2, "smoothing").text, "not smoothed");
    EXPECT_EQ(page.paragraphs.last(), "Edge margin 0.0625 mm, KxMath 7.8.9.");
    EXPECT_EQ(json["edgeMargin"].toDouble(), 0.0625);
}

TEST(ConicityPage, DrawsCurvesAndContacts) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readPage(kxreport::conicityReport(result()));
    const ReadPlot curve = page.plot("Equivalent conicity over the amplitude");
    EXPECT_EQ(curve.items.at(0).runs, 2) << "broken where there is no conicity";
    EXPECT_TRUE(curve.caption.contains("The mark is the value at 2.5 mm"));
    ASSERT_EQ(curve.items.at(0).points.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        const QJsonValue point = json["conicity"][i < 2 ? int(i) : int(i) + 1];
        curve.expectNear(curve.items[0].points[i], {point[0].toDouble(), point[1].toDouble()});
    }
    curve.expectNear(curve.withTooltip("0.219 at 2.5 mm").points.at(0),
                     {json["shownAmplitude"].toDouble(), json["shownConicity"].toDouble()});
    const ReadPlot deltaR = page.plot("Difference of the rolling radii");
    ASSERT_EQ(deltaR.items.size(), 2u);
    deltaR.expectNear(deltaR.items[0].points.at(0), {deltaR.items[0].points[0].x(), 0.0});
    for (int i = 0; i < 3; ++i) {
        deltaR.expectNear(deltaR.items[1].points.at(size_t(i)), points(json["deltaR"], 0, 1).at(size_t(i)));
    }
    const ReadPlot contacts = page.plot("Contact points over the displacement");
    contacts.expectPoints("first rail", points(json["pictures"]["contacts1"], 0, 6));
    contacts.expectPoints("second rail", points(json["pictures"]["contacts2"], 0, 6));
    const std::tuple<const char*, const char*, const char*, const char*> sides[] = {
        {"First side", "wheel1", "rail1", "contacts1"}, {"Second side", "wheel2", "rail2", "contacts2"}};
    for (const auto& [title, wheel, rail, contact] : sides) {
        const ReadPlot placed = page.plot(title);
        placed.expectPoints("wheel", points(json["pictures"]["sections"][wheel]["points"]));
        placed.expectPoints("rail", points(json["pictures"]["sections"][rail]["points"]));
        std::vector<QPointF> both = points(json["pictures"][contact], 2, 3);
        const std::vector<QPointF> onRail = points(json["pictures"][contact], 4, 5);
        both.insert(both.end(), onRail.begin(), onRail.end());
        placed.expectPoints("contact points", both);
    }
    EXPECT_LT(page.plot("First side").unitsPerPixel.y(), 0.0) << "heights grow upwards";
}

TEST(ConicityPage, ShowsNoMarkWithoutAConicity) {
    ConicityResult r = result();
    r.shownConicity.reset();
    const ReadPage page = readPage(kxreport::conicityReport(r));
    EXPECT_EQ(page.facts.at("equivalent conicity at 2.5 mm").text, "-");
    EXPECT_EQ(page.plot("Equivalent conicity over the amplitude").items.size(), 3u) << "curve and interval";
}

/// The first digit of half the interval's width is shown, from hundredths to ten-thousandths.
TEST(ConicityPage, DigitsFollowTheInterval) {
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        std::optional<float> conicity;
        Interval interval;
        const char* text;
    };
    const Case cases[] = {{0.1851f, {0.1839f, 0.1863f}, "0.185 \u00b1 0.001"},
                          {0.1851f, {0.1842f, 0.1860f}, "0.1851 \u00b1 0.0009"},
                          {0.1954f, {0.1654f, 0.2254f}, "0.20 \u00b1 0.03"},
                          {0.1854f, {0.1754f, 0.2054f}, "0.19 (0.18 to 0.21)"},
                          {0.36f, {0.11f, 0.86f}, "0.36 (0.11 to 0.86)"},
                          {0.25f, {0.0f, 5.0f}, "0.25 (0.00 to 5.00)"},
                          {0.12345f, {0.12345f - 2e-5f, 0.12345f + 2e-5f}, "0.1235 \u00b1 <0.0001"},
                          {0.12345f, {kNaN, kNaN}, "0.1235"},
                          {std::nullopt, {kNaN, kNaN}, "-"}};
    for (const Case& c : cases) {
        EXPECT_EQ(kxreport::conicityText(c.conicity, c.interval), QString::fromUtf8(c.text));
    }
}

} // namespace
