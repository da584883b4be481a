// The conicity as JSON and back, and the page of what was read back.
#include "inspect/conicity/wheelSets.h"
#include "inspect/inspectSupport.h"
#include "report/conicity/conicityReport.h"

#include <cmath>

using namespace conicity_test;

TEST(ConicityJson, ComesBackWithoutPictures) {
    ConicityResult result;
    result.sections[Wheel1].file = "w1.csv";
    result.sections[Rail1].file = "r1.csv";
    result.sections[Wheel2].file = "w2.csv";
    result.sections[Rail2].file = "r\u00e42.csv";
    result.gauge = 1435.1f;
    result.backToBack = 1360.3f;
    result.radius1 = 460.0f;
    result.radius2 = 461.2f;
    result.edgeMargin = 0.001f;
    result.shownAmplitude = 2.5f;
    result.gaugeError = {0.02f, 0.3f, 150.0f};
    result.shownConicity = 0.171f;
    result.shownInterval = {0.15f, 0.19f};
    result.shownAsMeasured = 0.157f;
    result.rows = {{2.0f, 0.17f, {0.16f, 0.2f}, {}}};
    result.intervals = {{0.08f, 0.12f}, {}, {}};
    result.sections[Wheel1].noise = {0.01f, 0.02f};
    result.sections[Rail1].windows = {1.5f, 7.7f};
    result.conicity = {{1.0f, 0.1f}, {2.0f, std::nanf("")}, {3.0f, 0.0f}};
    result.deltaR = {{-0.1f, -0.02f}, {0.2f, 0.05f}};
    result.warnings = {"one", "two"};
    const ConicityResult read = conicityFromJson(toJson(result));
    EXPECT_EQ(toJson(read), toJson(result));
    ASSERT_EQ(read.rows.size(), 1u);
    EXPECT_EQ(read.rows[0].interval, result.rows[0].interval);
    EXPECT_EQ(read.shownAsMeasured, 0.157f);
    EXPECT_EQ(read.gaugeError.turn, 0.3f);
    EXPECT_EQ(read.sections[Rail1].windows, result.sections[Rail1].windows);
    EXPECT_TRUE(read.isCalculated());
    EXPECT_EQ(read.sections[Wheel1].dropped, std::nullopt);
}

TEST(ConicityJson, WithPicturesGivesTheSamePage) {
    ConicityInput input = coneInput();
    input.amplitudes = 7;
    input.gaugeDepth = 3.3f;
    const ConicityResult result = measureConicity(input);
    const std::string json = toJson(result, Pictures::Included);
    const ConicityResult read = conicityFromJson(json);
    EXPECT_EQ(toJson(read, Pictures::Included), json);
    EXPECT_EQ(toJson(read), toJson(result));
    EXPECT_EQ(kxreport::conicityReport(read), kxreport::conicityReport(result));
    EXPECT_EQ(read.sections[Rail2].isCut, true);
    EXPECT_EQ(read.sections[Wheel2].isCut, std::nullopt);
    EXPECT_EQ(read.sections[Wheel2].dropped, 0);
    EXPECT_EQ(read.shownConicity, result.shownConicity);

    ConicityResult nameless = result;
    nameless.sections[Rail1].file.clear();
    EXPECT_TRUE(kxreport::conicityReport(nameless).contains(QStringLiteral("on rails rail1 and d.csv")));
}

TEST(ConicityJson, RefusesWhatIsNoConicity) {
    const std::string json = toJson(measureConicity(coneInput()));
    const auto with = [&](const char* from, const char* to) { return inspect_test::replaced(json, from, to); };
    const struct {
        std::string json, key;
        ErrorKind kind;
    } cases[] = {
        {json.substr(0, json.size() / 2), "", ErrorKind::Damaged},
        {with("\"gauge\"", "\"cage\""), "gauge", ErrorKind::Unsuitable},
        {with("\"rail2\": \"folder/d.csv\"", "\"rail2\": 3"), "profiles.rail2", ErrorKind::Unsuitable},
        {with("\"conicity\": [\n        [", "\"conicity\": [\n        [ 1,"), "conicity[0]", ErrorKind::Unsuitable},
    };
    for (const auto& [text, key, kind] : cases) {
        inspect_test::expectError([&, text = text] { conicityFromJson(text); }, kind, key);
    }
}
