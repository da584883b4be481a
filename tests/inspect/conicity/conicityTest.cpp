// The conicity of cones on round rails, which has a closed form, and what becomes of profiles that stand otherwise.
#include "inspect/conicity/wheelSets.h"
#include "inspect/inspectSupport.h"

#include <algorithm>
#include <cmath>
#include <functional>

using namespace conicity_test;

namespace {

constexpr float kSlopes = kSlope1 + kSlope2;

/// The displacement between two points of the difference of radii at which it is 0.
float centreOf(const ConicityResult& result) {
    const auto right =
        std::find_if(result.deltaR.begin(), result.deltaR.end(), [](const Point& p) { return p.y >= 0.0f; });
    const Point left = *(right - 1);
    return left.x - left.y * (right->x - left.x) / (right->y - left.y);
}

/// How far the contact is from the top of the rail, positive towards the gauge side.
float fromTop(const PlacedSection& placed, const Contact& contact, float inwards) {
    const auto isLower = [](const Point& a, const Point& b) { return a.y < b.y; };
    const Point top = *std::max_element(placed.points.begin(), placed.points.end(), isLower);
    return inwards * (contact.rail.x - top.x);
}

} // namespace

TEST(Conicity, OfConesIsTheMeanOfTheirSlopes) {
    const ConicityResult result = measureConicity(coneInput());
    ASSERT_TRUE(result.isCalculated()) << result.reason;
    EXPECT_TRUE(result.warnings.empty()) << result.warnings.front();
    EXPECT_NEAR(centreOf(result), 0.0f, 0.05f);
    ASSERT_EQ(result.rows.size(), 11u);
    for (std::size_t i = 0; i < 8; ++i) { // up to the flanges
        const ConicityRow& row = result.rows[i];
        EXPECT_EQ(row.amplitude, i == 0 ? 0.5f : static_cast<float>(i));
        EXPECT_NEAR(row.conicity.value_or(0.0f), kSlopes / 2.0f, 0.001f * kSlopes / 2.0f) << row.amplitude;
        EXPECT_TRUE(row.interval.holds(*row.conicity));
        EXPECT_LT(row.interval.high - row.interval.low, 0.02f * kSlopes) << "exact points";
        EXPECT_EQ(row.asMeasured, row.conicity);
    }
    EXPECT_EQ(result.rows[3].conicity, result.shownConicity);
    EXPECT_EQ(result.rows[3].interval, result.shownInterval);
    EXPECT_EQ(conicityAt(result, 3.0f), result.shownConicity);
    EXPECT_FALSE(conicityAt(result, result.conicity.back().x + 0.5f));
    EXPECT_FALSE(conicityAt(result, 0.4f));
    EXPECT_FALSE(result.sections[Rail2].windows) << "nothing to smooth";

    // A cone touches a round rail where that has its slope, whatever the displacement.
    ASSERT_EQ(result.contacts1.size(), result.contacts2.size());
    const float touch1 = kRailRadius1 * std::sin(std::atan(kSlope1));
    const float touch2 = kRailRadius2 * std::sin(std::atan(kSlope2));
    for (std::size_t i = 0; i < 40; ++i) { // to -3.9 mm
        const Contact& first = result.contacts1[i];
        const Contact& second = result.contacts2[i];
        EXPECT_NEAR(first.displacement, -0.1f * static_cast<float>(i), 1e-3f);
        EXPECT_NEAR(std::abs(first.slope), kSlope1, 1e-3f);
        EXPECT_NEAR(std::abs(second.slope), kSlope2, 1e-3f);
        EXPECT_NEAR(first.outwards, 0.0f, 0.1001f);
        EXPECT_NEAR(fromTop(result.sections[Rail1], first, 1.0f), touch1, 0.11f);
        EXPECT_NEAR(fromTop(result.sections[Rail2], second, -1.0f), touch2, 0.11f);
    }
}

TEST(Conicity, CountsOnlyTheDifferenceOfTheRadii) {
    ConicityInput input = coneInput();
    const ConicityResult centred = measureConicity(input);
    input.radius2 += 0.34f;
    const ConicityResult shifted = measureConicity(input);
    input.radius1 += 30.0f;
    input.radius2 += 30.0f;
    const ConicityResult larger = measureConicity(input);
    ASSERT_TRUE(shifted.shownConicity && larger.shownConicity);
    EXPECT_NEAR(centreOf(shifted) - centreOf(centred), -0.34f / kSlopes, 0.01f);
    EXPECT_NEAR(centreOf(larger), centreOf(shifted), 0.001f);
    EXPECT_NEAR(*larger.shownConicity, kSlopes / 2.0f, 0.01f * kSlopes / 2.0f);
    EXPECT_EQ(larger.radius1, 491.0f);
    EXPECT_EQ(larger.radius2, input.radius2);
}

TEST(Conicity, ProfilesMayHaveAnyOrientation) {
    const std::string expected = toJson(measureConicity(coneInput()), Pictures::Included);
    for (const auto& [part, isUp, isMirrored] :
         {std::tuple{Wheel1, true, false}, {Rail1, false, true}, {Wheel2, true, true}, {Rail2, true, false}}) {
        ConicityInput input = coneInput();
        CrossSection& section = input.sections[part];
        for (Point& p : section.profile->points) {
            p = {isMirrored ? -p.x : p.x, isUp ? -p.y : p.y};
        }
        section.orientation = {isUp, isMirrored};
        EXPECT_EQ(toJson(measureConicity(input), Pictures::Included), expected) << nameOf(part);
        section.orientation = {};
        ConicityResult found = measureConicity(input);
        const bool isTold = part != Rail1; // whose sides are alike
        ASSERT_EQ(found.warnings.size(), isTold ? 1u : 0u) << nameOf(part);
        EXPECT_TRUE(!isTold || found.warnings[0].rfind(std::string(nameOf(part)) + " has y up and x ", 0) == 0);
        found.warnings.clear();
        EXPECT_TRUE(!isTold || toJson(found, Pictures::Included) == expected) << nameOf(part);
        EXPECT_NEAR(found.shownConicity.value_or(0.0f), kSlopes / 2.0f, 0.009f * kSlopes / 2.0f) << nameOf(part);
    }
}

TEST(Conicity, SaysWhatWasDroppedAndCut) {
    ConicityInput input = coneInput();
    std::vector<Point>& points = input.sections[Wheel2].profile->points;
    points.insert(points.begin() + 300, {Point{}, points[900], points[901]}); // one missing, two out of order
    input.gaugeDepth = 5.2f; // of 6.68 mm on the first rail and 4.76 mm on the second one
    const ConicityResult result = measureConicity(input);
    EXPECT_EQ(result.sections[Wheel1].dropped, 0);
    EXPECT_GE(result.sections[Wheel2].dropped.value_or(0), 3);
    EXPECT_EQ(result.sections[Rail1].isCut, true);
    EXPECT_EQ(result.sections[Rail2].isCut, false);
    EXPECT_EQ(result.sections[Wheel1].isCut, std::nullopt);
    const auto warns = [&result](const std::string& text) {
        return std::any_of(result.warnings.begin(), result.warnings.end(),
                           [&text](const std::string& warning) { return warning.rfind(text, 0) == 0; });
    };
    EXPECT_TRUE(warns("wheel2 has a gap of 38.5 mm at x = 30.0, which is taken as straight"));
    EXPECT_TRUE(warns("wheel2 has 375 points that are missing or stand behind others, which were dropped"));
    EXPECT_TRUE(
        warns("rail2 does not reach down to the gauge depth on its gauge side: its end is taken as gauge point"));
}

TEST(Conicity, WithoutAResultSaysWhy) {
    ConicityInput input = coneInput();
    input.sections[Wheel2].orientation.isMirrored = true;
    const ConicityResult result = measureConicity(input);
    EXPECT_FALSE(result.isCalculated());
    EXPECT_EQ(result.reason, "no conicity can be calculated from these profiles");
    EXPECT_TRUE(result.conicity.empty() && !result.rows.at(3).conicity);
    EXPECT_EQ(result.shownConicity, std::nullopt);
    ASSERT_FALSE(result.warnings.empty());
    EXPECT_EQ(result.warnings.front(),
              "wheel2 is taken to have y down and x inwards, but its shape shows y down and x outwards");
    EXPECT_EQ(conicityFromJson(toJson(result)).reason, result.reason);
}

TEST(Conicity, NothingIsInterpolatedToAnAmplitudeWithoutOne) {
    ConicityInput input = coneInput();
    for (const WheelSetPart part : {Wheel1, Wheel2}) {
        for (Point& p : input.sections[part].profile->points) {
            const float fromMiddle = (p.x - 74.0f) / 6.0f;
            p.y -= 6.0f * std::exp(-fromMiddle * fromMiddle); // a tread worn very hollow
        }
    }
    input.edgeMargin = 0.001f;
    const ConicityResult result = measureConicity(input);
    ASSERT_TRUE(result.isCalculated());
    std::size_t missing = 0;
    for (std::size_t i = 1; i < result.conicity.size(); ++i) {
        const Point& p = result.conicity[i];
        EXPECT_TRUE(std::isnan(p.y) || p.y > 0.0f);
        if (std::isnan(p.y)) {
            ++missing;
            const float before = p.x - (p.x - result.conicity[i - 1].x) * 0.4f;
            EXPECT_FALSE(conicityAt(result, before));
            EXPECT_EQ(reasonWithoutConicity(result, before),
                      "the difference of radii is too rough there for the method");
        }
    }
    EXPECT_GT(missing, 0u);
    EXPECT_EQ(toJson(conicityFromJson(toJson(result))), toJson(result));
    EXPECT_EQ(reasonWithoutConicity(result, 0.4f), "the curve begins at 0.50 mm");
}

TEST(Conicity, RefusesInputThatCannotBeUsed) {
    const struct {
        const char* what;
        std::function<void(ConicityInput&)> spoil;
        ErrorKind kind;
    } cases[] = {
        {"gauge needs a number from 100 to 10000, got 99", [](auto& in) { in.gauge = 99.0f; }, ErrorKind::BadArgument},
        {"edgeMargin needs a number from 0 to 1, got nan", [](auto& in) { in.edgeMargin = std::nanf(""); },
         ErrorKind::BadArgument},
        {"rail2 'folder/d.csv' holds no points", [](auto& in) { in.sections[Rail2].profile = Profile(); },
         ErrorKind::Unsuitable},
        {"wheel2 'folder/c.csv' cannot be read", [](auto& in) { in.sections[Wheel2].profile.reset(); },
         ErrorKind::NotFound},
    };
    for (const auto& [what, spoil, kind] : cases) {
        ConicityInput input = coneInput();
        spoil(input);
        const Error error = inspect_test::errorOf([&] { measureConicity(input); });
        EXPECT_EQ(std::string(error.what()).rfind(what, 0), 0u) << error.what();
        EXPECT_EQ(error.kind(), kind) << what;
    }
}
