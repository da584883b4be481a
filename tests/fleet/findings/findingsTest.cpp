// Alarms and announcements of wheels.
#include "fleet/findings/findings.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace kxfleet;
using KxInspect::LimitVerdict;

/// A wheel of a vehicle with a reading each day.
void addWheel(History& history, const std::string& vehicle, const std::vector<double>& values,
              const std::vector<std::optional<LimitVerdict>>& verdicts = {}) {
    HistoryWheel wheel;
    wheel.wheel = {vehicle, 1, "left"};
    wheel.verdicts = verdicts;
    wheel.verdicts.resize(values.size());
    WheelSeries series;
    for (std::size_t i = 0; i < values.size(); ++i) {
        series.readings.push_back({20000.0 + static_cast<double>(i), values[i], 0});
    }
    history.wheels.push_back(wheel);
    history.series.push_back(series);
}

History empty() {
    History history;
    history.measure = "flangeThickness";
    history.places = {{"north", "left"}};
    history.shifts = {{}};
    return history;
}

KxInspect::Limits least(double thickness) {
    KxInspect::Limits limits;
    limits.measures.push_back({"flangeThickness", "", {.alarmLow = thickness}});
    return limits;
}

std::vector<double> wear(double last, double perDay, int days) {
    std::mt19937_64 engine(1);
    std::normal_distribution<double> noise(0.0, 0.01);
    std::vector<double> values;
    for (int day = 1 - days; day <= 0; ++day) {
        values.push_back(last + perDay * day + noise(engine));
    }
    return values;
}

TEST(Findings, AreByWheel) {
    History history = empty();
    addWheel(history, "good", {30, 30, 30, 30, 30});
    addWheel(history, "open", {30, 30, 23.9, 30, 23.8});
    addWheel(history, "closed", {23, 23, 30, 30, 30});
    addWheel(history, "later", wear(24.2, -0.02, 40));
    addWheel(history, "sooner", wear(24.1, -0.02, 40));
    const Findings found = findingsOf(history, least(24.0));
    EXPECT_EQ(found.judged, 5u);
    ASSERT_EQ(found.alarms.size(), 2u);
    EXPECT_EQ(history.wheels[found.alarms[0].wheel].wheel.vehicle, "open");
    EXPECT_EQ(found.alarms[0].alarm.readings, (std::vector<std::size_t>{2, 4}));
    EXPECT_FALSE(found.alarms[0].alarm.closed);
    EXPECT_EQ(history.wheels[found.alarms[1].wheel].wheel.vehicle, "closed");
    EXPECT_EQ(found.alarms[1].alarm.closed, 4u);
    ASSERT_EQ(found.announcements.size(), 2u);
    EXPECT_EQ(history.wheels[found.announcements[0].wheel].wheel.vehicle, "sooner");
    EXPECT_EQ(history.wheels[found.announcements[1].wheel].wheel.vehicle, "later");
}

TEST(Findings, ShiftsOfSensorsAreTakenOff) {
    History history = empty();
    addWheel(history, "V1", {24.4, 24.4, 23.9, 23.9, 23.9});
    EXPECT_EQ(findingsOf(history, least(24.0)).alarms.size(), 1u);
    history.shifts[0] = {{20003.0, 20002.0, -0.5}};
    EXPECT_TRUE(findingsOf(history, least(24.0)).alarms.empty());
}

TEST(Findings, AreByVerdictsWithoutLimits) {
    constexpr LimitVerdict kBad = LimitVerdict::Alarm;
    History history = empty();
    addWheel(history, "bad", wear(24.1, -0.02, 40), std::vector<std::optional<LimitVerdict>>(40, kBad));
    addWheel(history, "warned", {24, 24, 24}, {LimitVerdict::Warning, LimitVerdict::Warning, LimitVerdict::Warning});
    addWheel(history, "not judged", {20, 20, 20});
    const Findings found = findingsOf(history, {});
    EXPECT_EQ(found.judged, 2u);
    ASSERT_EQ(found.alarms.size(), 1u);
    EXPECT_EQ(found.alarms[0].wheel, 0u);
    EXPECT_TRUE(found.announcements.empty()); // no limit is known
    // Limits of another measure: this one has none, whatever the passes were judged by.
    KxInspect::Limits others;
    others.measures.push_back({"flangeHeight", "", {.alarmHigh = 36.0}});
    EXPECT_EQ(findingsOf(history, others).judged, 0u);
}

} // namespace
