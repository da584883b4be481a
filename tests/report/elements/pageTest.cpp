// Pages and their texts.
#include "report/elements/page.h"
#include "report/elements/fileNames.h"
#include "report/elements/numbers.h"
#include "report/elements/svg.h"
#include "report/pageReader.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace kxreport;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Page, HoldsItsPartsInOrder) {
    const QString evil = "<b>&\"'";
    Page page(evil, "sub " + evil);
    page.heading("h " + evil);
    page.paragraph("p " + evil);
    page.warning("w " + evil);
    page.facts({{"f1", "v1", Tone::Good}, {"f2", "v2", Tone::Bad}, {"f3", "v3", Tone::Faint}, {evil, evil}});
    page.figure("<svg></svg>", "c1 " + evil);
    page.figures({{"<svg></svg>", "c2"}, {"<svg></svg>", "c3"}});
    page.table({"a", evil}, {{{"1", Tone::Good}, {evil, Tone::Bad}}, {{"2", Tone::Faint}, {"3"}}}, 1);
    const QString html = page.html();
    EXPECT_FALSE(html.contains("<b>"));
    EXPECT_TRUE(html.contains("<title>&lt;b&gt;&amp;&quot;'</title>"));
    EXPECT_TRUE(html.contains("<td class=\"text good\">1</td><td class=\"bad\">"));
    EXPECT_TRUE(html.contains("<th class=\"text \">a</th><th class=\"\">"));
    const page_test::ReadPage read = page_test::readPage(html);
    EXPECT_EQ(read.title, evil);
    EXPECT_EQ(read.headings, QStringList("h " + evil));
    EXPECT_EQ(read.paragraphs, (QStringList{"sub " + evil, "p " + evil}));
    EXPECT_EQ(read.warnings, QStringList("Warning: w " + evil));
    const std::map<QString, page_test::ReadCell> facts = {
        {"f1", {"v1", "good"}}, {"f2", {"v2", "bad"}}, {"f3", {"v3", "faint"}}, {evil, {evil, ""}}};
    EXPECT_EQ(read.facts, facts);
    ASSERT_EQ(read.plots.size(), 3u);
    EXPECT_EQ(read.plots[0].caption + read.plots[1].caption + read.plots[2].caption, "c1 " + evil + "c2c3");
    EXPECT_EQ(read.tables.at(0).at(0, evil), (page_test::ReadCell{evil, "bad"}));
    EXPECT_EQ(read.tables.at(0).at(1, "a"), (page_test::ReadCell{"2", "faint"}));
    // What the tones look like: green for good, orange-red for bad.
    EXPECT_TRUE(html.contains("\n.good { color: var(--good); }\n.bad { color: var(--bad);"));
    EXPECT_TRUE(html.contains("--good: #00694d; --bad: #b34700;"));
    EXPECT_FALSE(html.contains("<script") || html.contains("script-src")) << "a page without scripts allows none";
}

TEST(Texts, AreEscaped) {
    EXPECT_EQ(escaped("a<b>&\"c\""), "a&lt;b&gt;&amp;&quot;c&quot;");
    EXPECT_EQ(escaped(QStringLiteral("a\t\u0007\u009f\ufffeb")), "a    b");
}

TEST(Texts, NameFilesWithoutFolders) {
    using namespace kxreport;
    EXPECT_EQ(distinctNames({"/data/a.bin", "b.bin", "/x/left/c.bin", "/x/right/c.bin", "b.bin"}),
              (QStringList{"a.bin", "b.bin", "left/c.bin", "right/c.bin", "b.bin"}));
    const std::vector<std::string> paths = {"/data/a.bin, profile 2", "/data/b.bin"};
    EXPECT_EQ(withNames("'/data/b.bin' differs from '/data/a.bin, profile 2', not '/data/c.bin'", paths,
                        distinctNames(paths)),
              "'b.bin' differs from 'a.bin, profile 2', not '/data/c.bin'");
    const std::pair<const char*, const char*> sentences[] = {
        {"'/data/a.bin' is damaged at byte 3", "'a.bin' is damaged at byte 3"},
        {"recording '../p/a.bin' lacks the key 'SENSOR1/k2'", "recording 'a.bin' lacks the key 'SENSOR1/k2'"},
        {"'/it's/a.bin' is empty", "'a.bin' is empty"},
        {"'a.bin' is 1/2 of it", "'a.bin' is 1/2 of it"},
        {"no file and/or folder", "no file and/or folder"},
        {"'/data/a.bin'", "'/data/a.bin'"}, // no sentence
        {"", ""}};
    for (const auto& [sentence, expected] : sentences) {
        EXPECT_EQ(withBareName(sentence), expected);
    }
}

TEST(Texts, OfNumbers) {
    const std::tuple<double, int, const char*> numbers[] = {
        {1.26, 1, "1.3"},    {-1.35, 1, "-1.4"},      {-0.04, 1, "0.0"}, {-0.05001, 1, "-0.1"},
        {0, 2, "0.00"},      {9999999, 0, "9999999"}, {1e7, 1, "1e+07"}, {-12345678, 1, "-1.23457e+07"},
        {kNaN, 1, "\u2013"}, {kInfinity, 1, "\u2013"}};
    for (const auto& [value, decimals, text] : numbers) {
        EXPECT_EQ(numberText(value, decimals), text);
    }
    const std::pair<double, const char*> pixels[] = {{3.04, "3"}, {-3.06, "-3.1"}, {10, "10"}, {0.1, "0.1"}};
    for (const auto& [value, text] : pixels) {
        EXPECT_EQ(coordinate(value), text);
    }
    EXPECT_EQ(fixedText(1359.6425f, 3), "1359.642");
    EXPECT_EQ(fixedText(-2.5f, 2), "-2.50");
    EXPECT_EQ(fixedText(float(kNaN), 3) + fixedText(float(-kInfinity), 3), "--");
    EXPECT_EQ(shortestText(0.1f), "0.1");
    EXPECT_EQ(shortestText(16777216.0f), "16777216");
    EXPECT_EQ(shortestText(float(kNaN)) + shortestText(float(kInfinity)), "");
    EXPECT_EQ(withInterval(28.14f, KxInspect::Interval::around(28.14f, 0.052f), 2), "28.14 \u00b1 0.05");
    EXPECT_EQ(withInterval(0.16f, {0.14f, 0.193f}, 2), "0.16 (0.14 to 0.19)");
    EXPECT_EQ(withInterval(0.16f, {}, 2) + withInterval(float(kNaN), {0.1f, 0.2f}, 2), "0.16-");
}

} // namespace
