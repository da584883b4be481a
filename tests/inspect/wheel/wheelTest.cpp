// The measures of wheels with straight flanks, which have a closed form, and verdicts.
#include <KxInspect/Wheel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace KxInspect;

namespace {

/// A wheel whose flange rises for 12 mm, is flat at its tip and has a straight flank, with a conical tread; y down, x from the flange back.
struct Wheel {
    float height = 28.0f; ///< of the flange over the tape circle
    float tipEnd = 20.0f; ///< x at which the flank begins
    float flank = 1.5f; ///< its slope
    float first = 0.0f; ///< x of the first point

    CrossSection section() const {
        constexpr float kStep = 0.01f;
        CrossSection result;
        result.profile.emplace();
        for (int i = 0; i <= static_cast<int>((135.0f - first) / kStep); ++i) {
            const float x = first + static_cast<float>(i) * kStep;
            const float tread = (kTapeCircleX - x) * 0.05f;
            const float flange = std::min({height - 12.0f + x, height, height - (x - tipEnd) * flank});
            result.profile->points.push_back({x, std::max(flange, tread)});
        }
        return result;
    }

    /// Where the flank is `level` below the tip.
    float at(float level) const { return tipEnd + level / flank; }
};

void expectMeasures(const WheelResult& result, const Wheel& wheel) {
    constexpr float kSmoothed = 0.04f; // the means over 20 points, which are 0.02 mm apart along the flank
    constexpr float kStep = 0.1f; // in which the width comes
    const WheelMeasures& m = result.measures;
    ASSERT_TRUE(m.heightAt70 && m.xAtLevel18 && m.widthLevel2ToH13 && m.heightExcess) << result.error;
    EXPECT_NEAR(*m.heightAt70, wheel.height, 0.01f);
    EXPECT_NEAR(*m.xAtLevel18, wheel.at(18.0f), kSmoothed);
    EXPECT_NEAR(*m.widthLevel2ToH13, wheel.at(wheel.height - 13.0f) - wheel.at(2.0f), kStep + 0.001f);
    EXPECT_NEAR(*m.heightExcess, wheel.height - (wheel.height >= 29.0f ? 30.0f : 28.0f), 0.01f);
    EXPECT_NEAR(result.widthStart.value_or(0.0f), wheel.at(2.0f), kStep + kSmoothed);
    constexpr float kRounded = 1e-3f; // of points in single precision, on which a short curve is fitted
    EXPECT_NEAR(m.flangeHeight.value_or(0.0f), wheel.height, kRounded);
    EXPECT_NEAR(m.flangeThickness.value_or(0.0f), wheel.at(wheel.height - 10.0f), kRounded);
    EXPECT_NEAR(m.flangeSlope.value_or(0.0f), wheel.at(wheel.height - 10.0f) - wheel.at(2.0f), 2.0f * kRounded);
    EXPECT_EQ(m.treadHollow, 0.0f);
    EXPECT_NEAR(m.treadSlope.value_or(0.0f), 0.05f, kRounded);
}

WheelMeasures measures(std::optional<float> height, std::optional<float> thickness) {
    WheelMeasures result;
    result.heightAt70 = height;
    result.xAtLevel18 = thickness;
    return result;
}

} // namespace

TEST(Wheel, MeasuresAreThoseOfTheClosedForm) {
    for (const Wheel& wheel : {Wheel{}, Wheel{31.5f, 17.0f, 1.3f}, Wheel{26.25f, 22.5f, 2.5f}}) {
        SCOPED_TRACE(wheel.height);
        const WheelResult result = measureWheel(wheel.section());
        expectMeasures(result, wheel);
        EXPECT_TRUE(result.warnings.empty());
        EXPECT_EQ(result.verdict, WheelVerdict::NoLimits);
        EXPECT_FALSE(result.section.empty() || result.measured.empty());
    }
}

TEST(Wheel, ProfilesBeginAtTheFlangeBack) {
    const Wheel late{29.5f, 19.0f, 1.7f, 2.5f};
    WheelOptions options;
    options.flangeBack = 0.0f;
    expectMeasures(measureWheel(late.section(), options), late);
    // Mirrored, with its flange back at x = 400 and 3 mm before it.
    const Wheel wheel{27.0f, 21.0f, 1.4f, -3.0f};
    CrossSection mirrored = wheel.section();
    for (Point& p : mirrored.profile->points) {
        p.x = 400.0f - p.x;
    }
    mirrored.orientation.isMirrored = true;
    options.flangeBack = 400.0f;
    expectMeasures(measureWheel(mirrored, options), wheel);
    options.flangeBack.reset();
    EXPECT_EQ(measureWheel(mirrored, options).error.rfind("does not begin on a steep flange back", 0), 0u);
}

TEST(Wheel, StandsAsItsShapeShows) {
    const Wheel wheel{28.4f, 20.5f, 1.6f};
    for (const auto& [isUp, isMirrored] : {std::pair{false, true}, {true, false}, {true, true}}) {
        CrossSection turned = wheel.section();
        for (Point& p : turned.profile->points) {
            p = {isMirrored ? -p.x : p.x, isUp ? -p.y : p.y};
        }
        const WheelResult found = measureWheel(turned);
        expectMeasures(found, wheel);
        ASSERT_EQ(found.warnings.size(), 1u);
        EXPECT_EQ(found.warnings[0], std::string("has y ") + (isUp ? "up" : "down") + " and x " +
                                         (isMirrored ? "inwards" : "outwards") +
                                         ", as its shape shows, and was turned");
        turned.orientation = {false, false};
        const WheelResult wrong = measureWheel(turned);
        EXPECT_FALSE(wrong.isMeasured()) << isUp << isMirrored;
        EXPECT_EQ(wrong.warnings[0].rfind("is taken to have y down and x outwards, but its shape shows", 0), 0u);
    }
    CrossSection rail;
    for (int i = -350; i <= 350; ++i) {
        const float x = 0.1f * static_cast<float>(i);
        rail.profile.emplace(rail.profile.value_or(Profile{})).points.push_back({x, 0.02f * x * x});
    }
    EXPECT_FALSE(measureWheel(rail).isMeasured());
}

TEST(Wheel, SectionsInSpaceAreTurnedAboutTheCentre) {
    const Wheel wheel{30.0f, 18.0f, 1.6f};
    WheelOptions options;
    options.centre = {100.0f, -20.0f};
    std::vector<Point3> rim;
    const CrossSection section = wheel.section();
    for (const Point& p : section.profile->points) {
        const float radius = 600.0f - p.x;
        rim.push_back({100.0f + 0.6f * radius, 50.0f - p.y, -20.0f - 0.8f * radius});
    }
    rim.insert(rim.begin() + 7, Point3{}); // missing
    expectMeasures(measureRim(rim, "rim", options), wheel);
    EXPECT_EQ(measureRim({Point3{}}).error, "holds no points");
}

TEST(Wheel, WithoutAProfileSaysWhy) {
    CrossSection missing{"no/such.csv"};
    CrossSection nothing;
    nothing.profile = Profile{{Point{}}};
    const WheelResults results = measureWheels({missing, nothing, Wheel().section()});
    EXPECT_EQ(results.wheels[0].error.rfind("cannot be read", 0), 0u) << results.wheels[0].error;
    EXPECT_EQ(results.wheels[1].error, "holds no points");
    EXPECT_EQ(results.wheels[1].verdict, WheelVerdict::NotRead);
    EXPECT_FALSE(results.wheels[1].isMeasured());
    EXPECT_TRUE(results.wheels[2].isMeasured());

    WheelOptions options;
    options.spacing = 0.001f;
    EXPECT_THROW(measureWheel(Wheel().section(), options), Error);
    options.spacing = 1e-2f;
    CrossSection far;
    far.profile = Profile{{{0.0f, 0.0f}, {1e30f, 1.0f}}};
    EXPECT_EQ(measureWheel(far, options).error, "is too long for points every 0.01 mm");
    options.centre.x = std::numeric_limits<float>::infinity();
    EXPECT_THROW(measureRim({}, {}, options), Error);
}

TEST(Wheel, MissingMeasuresHaveTheirReasons) {
    const auto cut = [](const Wheel& wheel, float from, float to) {
        CrossSection section = wheel.section();
        auto& points = section.profile->points;
        const auto isOutside = [&](const Point& p) { return p.x < from || p.x > to; };
        points.erase(std::remove_if(points.begin(), points.end(), isOutside), points.end());
        return section;
    };
    const struct {
        CrossSection section;
        std::array<std::string, 4> reasons; // of the measures from the smooth profile
    } cases[] = {
        {Wheel().section(), {}},
        {Wheel{23.5f, 20.0f, 1.5f}.section(),
         {"the profile shows a flange of 23.5 mm; those of wheels have 24 to 40 mm"}},
        {cut({}, 0.0f, 60.0f), {"the profile ends 60.0 mm from the flange back, before the tape circle at 70.0 mm"}},
        {cut({}, 0.0f, 20.0f), {"the profile has no flank: behind its highest point it never falls 2.0 mm"}},
        {cut({}, 0.0f, 0.01f), {"there are too few points for a smooth profile"}},
    };
    for (const auto& [section, expected] : cases) {
        const WheelResult result = measureWheel(section);
        EXPECT_EQ(result.isMeasured(), bool(result.measures.heightAt70));
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(result.reasons[i], expected[result.isMeasured() ? i : 0]);
        }
        EXPECT_EQ(toJson(wheelsFromJson(toJson(WheelResults{{result}}))), toJson(WheelResults{{result}}));
    }
}

TEST(Wheel, ProfilesThatHardlyShowAWheelGiveNoMeasures) {
    WheelOptions options;
    options.flangeBack = 500.0f; // behind all points
    const WheelResult nothing = measureWheel(Wheel().section(), options);
    EXPECT_FALSE(nothing.isMeasured());
    EXPECT_FALSE(nothing.reasons.back().empty());
    options.flangeBack = 0.0f;
    const Wheel afterTip{28.0f, 14.0f, 1.5f, 14.25f};
    const WheelResult flank = measureWheel(afterTip.section(), options);
    EXPECT_FALSE(flank.measures.flangeHeight);
    EXPECT_EQ(flank.reasons[4], "the profile does not show both sides of the flange tip");
    CrossSection far = Wheel().section(); // where points a hundredth of a millimetre apart are one
    for (Point& p : far.profile->points) {
        p = {p.x + 1e6f, p.y - 1e6f};
    }
    const WheelResult coarse = measureWheel(far);
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        EXPECT_TRUE(std::isfinite((coarse.measures.*kWheelMeasures[i].value).value_or(0.0f)));
    }
}

TEST(Wheel, WarnsWhereTheFlankIsTakenForTheBack) {
    // The flank begins at x = 14 and is 9 mm below the tip at x = 20.
    Wheel wheel{28.0f, 14.0f, 1.5f, 0.0f};
    WheelOptions options;
    options.flangeBack = 0.0f;
    const float width = measureWheel(wheel.section(), options).measures.widthLevel2ToH13.value();
    for (const auto& [first, isDoubtful, error] :
         {std::tuple{2.5f, false, 0.0f}, {4.0f, true, 0.0f}, {10.25f, true, 0.3f}, {11.5f, true, 0.7f}}) {
        wheel.first = first;
        const WheelResult result = measureWheel(wheel.section(), options);
        EXPECT_EQ(result.warnings.empty(), !isDoubtful) << first;
        EXPECT_GE(std::abs(result.measures.widthLevel2ToH13.value() - width), error)
            << first << ": what the warning is for";
    }
    EXPECT_EQ(measureWheel(wheel.section(), options).warnings.front().rfind("begins only 0.5 mm below the tip", 0), 0u);
}

TEST(Wheel, LimitsGiveVerdicts) {
    const WheelLimits height{{27.5f, 30.0f}};
    const WheelLimits both{{27.5f, {}}, {{}, 33.0f}};
    const struct {
        WheelMeasures measures;
        WheelLimits limits;
        WheelVerdict verdict;
    } cases[] = {
        {measures(28.0f, 34.0f), {}, WheelVerdict::NoLimits},   {measures({}, {}), {}, WheelVerdict::NoLimits},
        {measures(27.5f, 34.0f), height, WheelVerdict::Within}, // the limit itself
        {measures(30.0f, {}), height, WheelVerdict::Within},    {measures(30.25f, {}), height, WheelVerdict::Outside},
        {measures(27.25f, 32.0f), both, WheelVerdict::Outside}, {measures(28.0f, 33.5f), both, WheelVerdict::Outside},
        {measures({}, 33.5f), both, WheelVerdict::Outside}, // whatever is missing
        {measures({}, 32.0f), both, WheelVerdict::NotMeasured}, {measures(28.0f, {}), both, WheelVerdict::NotMeasured},
        {measures(99.0f, 33.0f), both, WheelVerdict::Within},
    };
    WheelLimits hollow;
    hollow.treadHollow.max = 1.5f;
    WheelMeasures hollowed = measures(28.0f, 34.0f);
    hollowed.treadHollow = 2.25f;
    EXPECT_EQ(verdictOf(hollowed, hollow), WheelVerdict::Outside);
    EXPECT_EQ(verdictOf(measures(28.0f, 34.0f), hollow), WheelVerdict::NotMeasured);
    for (const auto& [found, limits, verdict] : cases) {
        EXPECT_STREQ(textOf(verdictOf(found, limits)), textOf(verdict)) << &found - &cases[0].measures;
    }
}
