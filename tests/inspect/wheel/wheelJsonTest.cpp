// Measured wheels as JSON and back, and the page of what was read back.
#include "inspect/inspectSupport.h"
#include "report/wheel/wheelReport.h"

#include <KxInspect/Wheel.h>

#include <gtest/gtest.h>

using namespace KxInspect;

namespace {

WheelResults results() {
    WheelResult wheel;
    wheel.file = "a/one.csv";
    wheel.warnings = {"has 12 points only"};
    wheel.measures = {28.25f, 32.5f, {}, 0.25f, 28.125f};
    wheel.intervals[0] = {28.0f, 28.5f};
    wheel.intervals[4] = {28.0625f, 28.1875f};
    wheel.intervalReasons[1] = "no back";
    wheel.reasons[2] = "the flank does not reach level 15.2";
    wheel.verdict = WheelVerdict::Outside;
    wheel.section = {{0.5f, 28.0f}, {1.5f, 0.0f}, {70.0f, 28.25f}};
    wheel.measured = {{0.6f, 27.0f}, {1.7f, 0.1f}, {3.0f, 2.5f}, {70.1f, 28.25f}};
    wheel.widthStart = 3.0f;
    wheel.places = {{{15.5f, 0.0f}}, {{70.0f, 28.0f}}, {}, {{32.0f, 18.0f}}, {}, {}, 135.5f};
    WheelResult gone;
    gone.file = "gone.csv";
    gone.error = "cannot be read: No such file or directory";
    gone.verdict = WheelVerdict::NotRead;
    WheelResult bare;
    bare.file = "bare.csv";
    bare.reasons.fill("too short");
    bare.verdict = WheelVerdict::NotMeasured;
    return {{wheel, gone, bare}, {{27.0f, 28.2f}, {{}, 40.1f}}, {0.25f, 0.5f, 125.0f}, "2.0.10"};
}

} // namespace

TEST(WheelJson, ReadBackGivesTheSamePage) {
    const WheelResults measured = results();
    EXPECT_EQ(toJson(wheelsFromJson(toJson(measured))), toJson(measured));
    const std::string json = toJson(measured, Pictures::Included);
    const WheelResults read = wheelsFromJson(json);
    EXPECT_EQ(toJson(read, Pictures::Included), json);
    EXPECT_EQ(kxreport::wheelReport(read), kxreport::wheelReport(measured));
    EXPECT_EQ(read.wheels[1].verdict, WheelVerdict::NotRead);
    EXPECT_EQ(read.wheels[0].reasons, measured.wheels[0].reasons);
    EXPECT_EQ(read.wheels[0].intervalReasons, measured.wheels[0].intervalReasons);
    EXPECT_EQ(read.gaugeError.turn, 0.5f);
    EXPECT_EQ(read.wheels[0].widthStart, 3.0f);
    EXPECT_EQ(read.wheels[0].intervals[4], measured.wheels[0].intervals[4]);
    EXPECT_FALSE(read.wheels[0].intervals[1].isKnown());
    EXPECT_EQ(read.wheels[0].places.flank, (Point{32.0f, 18.0f}));
    EXPECT_EQ(read.wheels[0].places.outerFace, 135.5f);
    EXPECT_EQ(read.limits.xAtLevel18.min, std::nullopt);
}

TEST(WheelJson, WithoutLimitsOrJudgementNothingIsWithin) {
    WheelResults none = results();
    none.wheels.erase(none.wheels.begin());
    EXPECT_NE(toJson(none).find("\"judged\": 0,\n            \"of\": 2,\n            \"outside\": null"),
              std::string::npos)
        << toJson(none);
    const QString page = kxreport::wheelReport(none);
    EXPECT_TRUE(page.contains("class=\"failure\"") && page.contains("No wheel could be judged by the limits."));
    EXPECT_FALSE(page.contains("class=\"good\"")) << page.toStdString();
    none.limits = {};
    EXPECT_NE(toJson(none).find("\"wheels\": null"), std::string::npos);
}

TEST(WheelJson, RefusesWhatIsNoResult) {
    const std::string json = toJson(results());
    for (const auto& [from, to, key] : {std::tuple{"\"wheels\": [", "\"heels\": [", "wheels"},
                                        {": \"outside\"", ": \"over there\"", "wheels[0].verdict"},
                                        {"32.5", "\"32.5\"", "wheels[0].xAtLevel18"}}) {
        const std::string changed = inspect_test::replaced(json, from, to);
        inspect_test::expectError([&] { wheelsFromJson(changed); }, ErrorKind::Unsuitable, key);
    }
}
