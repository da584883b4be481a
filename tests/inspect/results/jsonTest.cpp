// Numbers, lists and errors of results as JSON.
#include "inspect/results/json.h"
#include "inspect/inspectSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <random>

using namespace KxInspect;
using namespace KxInspect::detail;

namespace {

JsonValue readBack(QJsonObject document) {
    document[QStringLiteral("command")] = QStringLiteral("test");
    return JsonValue::parse(jsonText(document), "test");
}

} // namespace

TEST(Json, FloatsKeepTheirBits) {
    std::vector<Point> points = {{1360.1f, -0.1f},
                                 {std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()},
                                 {8388609.0f, 0.0f}};
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        float value = 0.0f;
        std::memcpy(&value, &bits, sizeof(value));
        points.push_back({std::isfinite(value) ? value : 1.0f, 0.1f * static_cast<float>(i)});
    }
    EXPECT_EQ(readBack({{QStringLiteral("points"), jsonPoints(points)}})["points"].points(), points);
    EXPECT_NE(jsonText({{QStringLiteral("a"), jsonNumber(1360.1f)}}).find("1360.1\n"), std::string::npos);
}

TEST(Json, MissingNumbersAreNull) {
    const float inf = std::numeric_limits<float>::infinity();
    const JsonValue read = readBack({{QStringLiteral("a"), jsonNumber(std::nanf(""))},
                                     {QStringLiteral("b"), jsonNumber(inf)},
                                     {QStringLiteral("c"), jsonNumber(std::nan(""))}});
    for (const char* const key : {"a", "b", "c"}) {
        EXPECT_TRUE(read[key].isNull()) << key;
        EXPECT_TRUE(std::isnan(read[key].number())) << key;
    }
    EXPECT_EQ(readBack({{QStringLiteral("i"), jsonInterval({0.1f, 7.5f})}})["i"].interval(), (Interval{0.1f, 7.5f}));
    EXPECT_FALSE(readBack({{QStringLiteral("i"), jsonInterval({0.1f, std::nanf("")})}})["i"].interval().isKnown());
    EXPECT_EQ(read["a"].textOrNull(), "");
    EXPECT_FALSE(read.has("d"));
}

TEST(Json, ErrorsNameKindAndKey) {
    const std::string text = R"({"command": "test", "list": [{"n": 1.5}, 7, "x", 5000000000], "flag": true,
        "points": {"x": [1], "y": []}})";
    const auto read = [&] { return JsonValue::parse(text, "test"); };
    const struct {
        std::function<void()> call;
        ErrorKind kind;
        const char* key;
        const char* reason;
    } cases[] = {
        {[] { JsonValue::parse("{\"command\": ", "test"); }, ErrorKind::Damaged, "", "is no JSON at byte "},
        {[] { JsonValue::parse("[]", "test"); }, ErrorKind::Unsuitable, "", "is no JSON object"},
        {[] { JsonValue::parse("{}", "test"); }, ErrorKind::Unsuitable, "command", "lacks the key 'command'"},
        {[&] { JsonValue::parse(text, "train"); }, ErrorKind::Unsuitable, "command", "'test', not of 'train'"},
        {[&] { read()["none"]; }, ErrorKind::Unsuitable, "none", "lacks the key 'none'"},
        {[&] { read()["list"].list()[0]["m"]; }, ErrorKind::Unsuitable, "list[0].m", "lacks the key 'list[0].m'"},
        {[&] { read()["list"].list()[0]["n"].wholeNumber(); }, ErrorKind::Unsuitable, "list[0].n", "no whole number"},
        {[&] { read()["list"].list()[3].wholeNumber(); }, ErrorKind::Unsuitable, "list[3]",
         "no whole number from -2147"},
        {[&] { read()["list"].list()[2].number(); }, ErrorKind::Unsuitable, "list[2]", "holds no number"},
        {[&] { read()["list"].list()[1].text(); }, ErrorKind::Unsuitable, "list[1]", "holds no text"},
        {[&] { read()["list"].flag(); }, ErrorKind::Unsuitable, "list", "holds no true or false"},
        {[&] { read()["flag"].list(); }, ErrorKind::Unsuitable, "flag", "holds no list"},
        {[&] { read()["flag"]["a"]; }, ErrorKind::Unsuitable, "flag", "holds no object"},
        {[&] { read()["points"].points(); }, ErrorKind::Unsuitable, "points", "differ in length"},
    };
    for (const auto& c : cases) {
        inspect_test::expectError(c.call, c.kind, c.key, c.reason);
    }
    EXPECT_EQ(read()["list"].list()[3].wideWholeNumber(), 5000000000);
    EXPECT_EQ(read()["list"].list()[1].wholeNumber(), 7);
}
