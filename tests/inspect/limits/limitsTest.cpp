// Limits from files, and verdicts on values by them.
#include "inspect/inspectSupport.h"
#include "inspect/limits/assessPass.h"
#include "support/tempFiles.h"

#include <KxInspect/PassSheet.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace KxInspect;
using inspect_test::expectErrorAt;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

Limits readText(const std::string& text) {
    const testing_support::TempFiles files;
    return readLimits(files.write("limits.ini", QByteArray::fromStdString(text)).toStdString());
}

TEST(Limits, AreReadForAllVehiclesAndForClasses) {
    const Limits limits = readText("; mm\n[backToBack]\r\nalarmLow = 1357\nwarningHigh=1363.5\n\n# lighter\n"
                                   "[backToBack / tram]\nalarmHigh = 1381\n[yaw]\nwarningLow=-4\nalarmHigh=4\n");
    ASSERT_EQ(limits.measures.size(), 3u);
    EXPECT_EQ(limits.measures[0].bounds.alarmLow, 1357.0);
    EXPECT_EQ(limits.measures[0].bounds.warningHigh, 1363.5);
    EXPECT_FALSE(limits.measures[0].bounds.warningLow || limits.measures[0].bounds.alarmHigh);
    EXPECT_EQ(limits.measures[1].vehicleClass, "tram");
    EXPECT_EQ(limits.source->name, "limits.ini");
}

TEST(Limits, RefuseWhatWouldNeverBeReached) {
    const std::tuple<const char*, ErrorKind, std::optional<std::int64_t>, const char*> faults[] = {
        {"", ErrorKind::Unsuitable, {}, "hold no limit"},
        {"[backToBak]\nalarmLow=1\n", ErrorKind::Unsuitable, 1, "unknown measure 'backToBak': is 'backToBack' meant?"},
        {"[yaw]\nalarmHihg=1\n", ErrorKind::Unsuitable, 2, "unknown key 'alarmHihg': is 'alarmHigh' meant?"},
        {"[yaw]\nalarmHigh=1\nalarmHigh=2\n", ErrorKind::Unsuitable, 3, "give 'alarmHigh' twice"},
        {"[yaw]\nalarmHigh=1\n[yaw]\nalarmHigh=2\n", ErrorKind::Unsuitable, 3, "[yaw] twice"},
        {"[yaw/a]\nalarmHigh=1\n[yaw / a]\nalarmHigh=2\n", ErrorKind::Unsuitable, 3, "twice"},
        {"[backToBack]\nalarmHigh=1.363\n", ErrorKind::Unsuitable, 2,
         "1.363 mm for 'alarmHigh' of backToBack, which is "
         "outside 400 to 2000 mm"},
        {"[yaw]\nwarningHigh=3\nalarmHigh=2\n", ErrorKind::Unsuitable, 3,
         "'alarmHigh' of yaw that is below its 'warningHigh'"},
        {"[yaw]\nalarmLow=3\nalarmHigh=2\n", ErrorKind::Unsuitable, 3, "below its 'alarmLow'"},
        {"[yaw]\nalarmHigh=\n", ErrorKind::Unsuitable, 2, "no number in 'alarmHigh'"},
        {"[yaw]\nalarmHigh=1,5\n", ErrorKind::Unsuitable, 2, "no number in 'alarmHigh'"},
        {"[yaw]\n", ErrorKind::Unsuitable, 1, "without a limit"},
        {"[yaw/]\nalarmHigh=1\n", ErrorKind::Damaged, 1, "without the class"},
        {"[yaw\n", ErrorKind::Damaged, 1, "without ']'"},
        {"alarmHigh=1\n", ErrorKind::Damaged, 1, "before the first section"},
        {"[yaw]\nalarmHigh\n", ErrorKind::Damaged, 2, "neither a section nor a key"},
    };
    for (const auto& [text, kind, line, reason] : faults) {
        expectErrorAt([&, text = text] { readText(text); }, kind, line, {}, reason);
    }
}

TEST(Limits, HoldTheirOwnValue) {
    const LimitBounds bounds{10.0, 12.0, 20.0, 22.0};
    const std::pair<double, LimitVerdict> cases[] = {
        {9.9, LimitVerdict::Alarm},    {10.0, LimitVerdict::Warning}, {11.9, LimitVerdict::Warning},
        {12.0, LimitVerdict::Ok},      {20.0, LimitVerdict::Ok},      {20.1, LimitVerdict::Warning},
        {22.0, LimitVerdict::Warning}, {22.1, LimitVerdict::Alarm},   {kNaN, LimitVerdict::NotMeasured}};
    for (const auto& [value, verdict] : cases) {
        EXPECT_EQ(verdictOf(value, bounds), verdict) << value;
    }
}

/// Two vehicles: a tram with one of its two axles, and a wagon with both. The second sensor missed the wheel of pair 3.
PassResult pass() {
    PassResult result;
    result.sides.resize(2);
    result.sides[0].wheels.resize(3);
    result.sides[1].wheels.resize(2);
    const float distances[] = {1381.0f, 1360.2f, kNaN};
    for (int i = 0; i < 3; ++i) {
        WheelPair pair;
        pair.wheels = {std::size_t(i), i < 2 ? std::optional(std::size_t(i)) : std::nullopt};
        pair.distance = distances[i];
        pair.interval = i < 2 ? Interval{distances[i] - 0.5f, distances[i] + 0.25f} : Interval{};
        pair.reason = i < 2 ? "" : "the sensor of side 2 did not see the wheel";
        pair.axle = {i == 0 ? 1 : 2, {}, i == 0 ? 2 : i, {}};
        result.pairs.push_back(pair);
    }
    result.train.vehicles = {{1, {1, 1}, 1, "T", "1", "tram", {}}, {2, {1, 1}, 2, "W", "2", "", {}}};
    return result;
}

TEST(Limits, JudgeByClassAndLeaveNothingUnmeasuredOk) {
    const Limits limits =
        readText("[backToBack]\nwarningHigh=1360.3\nalarmHigh=1363\n[backToBack/tram]\nwarningHigh=1382\n");
    PassResult result = pass();
    result.assessment = detail::assessPass(result, limits);
    const PassAssessment& a = *result.assessment;
    ASSERT_EQ(a.values.size(), 4u) << "three pairs, and the axle of the tram that nobody saw";
    EXPECT_EQ(a.values[0].verdict, LimitVerdict::Ok) << "an alarm but for its class";
    EXPECT_EQ(a.values[0].isDoubtful, false);
    EXPECT_EQ(a.values[1].verdict, LimitVerdict::Ok);
    EXPECT_EQ(a.values[1].isDoubtful, true) << "its interval reaches 1360.45";
    EXPECT_EQ(a.values[2].verdict, LimitVerdict::NotMeasured);
    EXPECT_EQ(a.values[2].reason, "the sensor of side 2 did not see the wheel");
    EXPECT_EQ(a.values[3].reason, "1 of its 2 axles have no number in the pass");
    EXPECT_EQ(a.ofWheel(1, 2), LimitVerdict::Ok);
    EXPECT_EQ(a.ofVehicle(1), LimitVerdict::NotMeasured);
    EXPECT_EQ(a.ofPass(), LimitVerdict::NotMeasured);
    result.pairs[1].distance = 1363.01f;
    EXPECT_EQ(detail::assessPass(result, limits).ofPass(), LimitVerdict::Alarm);

    // Without its class the tram has no verdict, whichever limits would hold.
    result.train.vehicles[0].vehicleClass.reset();
    const Assessment unknown = detail::assessPass(result, limits).values[0];
    EXPECT_EQ(unknown.verdict, LimitVerdict::NotMeasured);
    EXPECT_EQ(unknown.value, 1381.0);
    EXPECT_NE(unknown.reason.find("class"), std::string::npos);
    // A pass without wheels is not ok, and what has no limits has no verdict.
    PassResult empty;
    empty.sides.resize(2);
    EXPECT_EQ(detail::assessPass(empty, limits).ofPass(), LimitVerdict::NotMeasured);
    EXPECT_FALSE(detail::assessPass(result, readText("[yaw/bus]\nalarmHigh=1\n")).ofPass() == LimitVerdict::Ok);
}

TEST(Limits, DoNotJudgeWhatIsNotMeasured) {
    PassResult result = pass();
    const PassAssessment a = detail::assessPass(
        result,
        readText(
            "[roundness]\nalarmHigh=0.1\n[flangeHeight]\nalarmHigh=36\n[diameterDifferenceVehicle]\nalarmHigh=1\n"));
    EXPECT_EQ(a.count(LimitVerdict::NotMeasured), static_cast<int>(a.values.size()));
    EXPECT_GT(a.values.size(), 12u);
    for (const Assessment& value : a.values) {
        EXPECT_FALSE(value.reason.empty()) << value.measure;
    }
}

/// The same with diameters, of which one is missing.
PassResult passWithDiameters() {
    PassResult result = pass();
    result.sides[0].sensor = 1;
    result.sides[1].sensor = 4;
    result.identity.settings.values = {{"SENSOR1/side", "right"}, {"SENSOR4/side", "left"}};
    const auto add = [&](int pair, TrackSide side, float diameter) {
        PassWheelMeasures wheel{pair, side};
        wheel.values[0].value = diameter;
        wheel.values[0].interval = {diameter - 0.3f, diameter + 0.3f};
        result.wheels.push_back(wheel);
    };
    add(1, TrackSide::Left, 920.0f);
    add(1, TrackSide::Right, 918.5f);
    add(2, TrackSide::Left, 900.0f);
    add(2, TrackSide::Right, 900.25f);
    add(3, TrackSide::Right, 899.0f); // and none on the left
    return result;
}

TEST(Limits, JudgeDiametersAndTheirDifferences) {
    const PassResult result = passWithDiameters();
    const PassAssessment a = detail::assessPass(
        result, readText("[diameter]\nwarningLow=918.75\nalarmLow=850\n[diameterDifferenceAxle]\nwarningHigh=1\n"
                         "[diameterDifferenceVehicle]\nwarningHigh=5\n"));
    const auto values = [&](const std::string& measure) {
        std::string text;
        for (const Assessment& v : a.values) {
            text += v.measure != measure ? ""
                                         : (text.empty() ? "" : ", ") + std::string(textOf(v.verdict)) +
                                               (v.isDoubtful == true ? "?" : "");
        }
        return text;
    };
    EXPECT_EQ(values("diameter"), "warning?, ok, warning, warning, warning, not measured, not measured")
        << "of each pair the side of sensor 1, the right one, comes first; then the axle that nobody saw";
    EXPECT_EQ(values("diameterDifferenceAxle"), "warning, ok, not measured, not measured");
    EXPECT_EQ(values("diameterDifferenceVehicle"), "not measured, not measured");
    EXPECT_EQ(a.ofVehicle(2), LimitVerdict::Warning);
}

TEST(Sheet, HasARowForEachWheelAlsoForThoseThatNobodySaw) {
    PassResult result = passWithDiameters();
    result.wheels[0].values[0].byPoses = 0.2f;
    result.assessment =
        detail::assessPass(result, readText("[diameter]\nwarningLow=918.75\nalarmLow=850\n[diameterDifferenceAxle]\n"
                                            "warningHigh=1\n"));
    const std::vector<SheetRow> rows = sheetOf(result);
    std::string text;
    for (const SheetRow& row : rows) {
        const SheetValue& diameter = row.values[2];
        text += std::to_string(row.axle.vehicle.value_or(0)) + '.' + std::to_string(row.axle.axle.value_or(0)) + ' ' +
                textOf(*row.trackSide) + ' ' + std::to_string(row.pair) + ": " +
                (row.verdict ? textOf(*row.verdict) : "-") + (row.isDoubtful ? "?" : "") + ", " +
                (diameter.value ? std::to_string(int(*diameter.value)) : diameter.reason) + ", " +
                diameter.intervalHolds + '\n';
    }
    EXPECT_EQ(text, "1.2 right 1: warning?, 918, noise only\n"
                    "1.2 left 1: warning, 920, noise and poses\n"
                    "2.1 right 2: warning, 900, noise only\n"
                    "2.1 left 2: warning, 900, noise only\n"
                    "2.2 right 3: warning, 899, noise only\n"
                    "2.2 left 3: not measured, the sensor did not see the wheel, \n"
                    "1.1 right 0: not measured, the axle has no number in the pass, \n"
                    "1.1 left 0: not measured, the axle has no number in the pass, \n");
    EXPECT_EQ(rows[0].values[3].value, 1.5) << "the difference over the axle, in the rows of both wheels";
    EXPECT_EQ(rows[1].values[3].verdict, LimitVerdict::Warning);
    EXPECT_EQ(rows[2].values[4].reason, "the axle runs in no bogie");
    EXPECT_EQ(rows[2].values[5].reason, rows[4].values[5].reason) << "over the vehicle";
    EXPECT_FALSE(rows[0].values[0].verdict) << "no limits";
    EXPECT_EQ(rows[0].values[0].value, 1381.0);
}

TEST(Sheet, DifferencesShareTheErrorsOfThePosesOfOneSide) {
    const auto half = [](TrackSide largest) {
        PassResult result = passWithDiameters();
        result.wheels.clear();
        for (const int pair : {2, 3}) {
            for (const TrackSide side : {TrackSide::Left, TrackSide::Right}) {
                const bool isSmallest = pair == 2 && side == TrackSide::Right;
                const float diameter = isSmallest ? 900.0f : pair == 3 && side == largest ? 903.0f : 901.0f;
                PassWheelMeasures wheel{pair, side};
                wheel.values[0] = {diameter, {diameter - 0.5f, diameter + 0.5f}, {}, 0.4f};
                result.wheels.push_back(wheel);
            }
        }
        const Interval interval = sheetOf(result)[2].values[5].interval;
        return static_cast<double>(interval.high - interval.low) / 2.0;
    };
    EXPECT_NEAR(half(TrackSide::Right), std::sqrt(2.0) * 0.3, 1e-3) << "noise alone";
    EXPECT_NEAR(half(TrackSide::Left), std::sqrt(2.0) * 0.5, 1e-3);
}

} // namespace
